// Two values of a field.
#pragma once

#include "commands/compare/Fields.h"
#include "store/Value.h"

namespace orv::commands::compare {

/// Whether they count as the same: Null is 0, no, or an empty text.
bool areSameValues(const store::Value& a, const store::Value& b, double tolerance);

/// The two as they are told: numbers in as few digits as their column needs, bytes by their count.
std::pair<store::Value, store::Value> toldValues(const store::Value& a, const store::Value& b);

}  // namespace orv::commands::compare
