// Two values of a field.
#pragma once

#include <utility>

#include "commands/compare/Fields.h"
#include "store/Value.h"

namespace orv::commands::compare {

/// Whether the values of a field count as the same.
bool areSameInField(const Field& field, const store::Value& a, const store::Value& b,
                    double tolerance);

/// The two as they are told: numbers in as few digits as their column needs, or as tell them apart,
/// bytes by their count.
std::pair<store::Value, store::Value> toldValues(const store::Value& a, const store::Value& b);
/// The same of two numbers.
std::pair<std::string, std::string> toldNumbers(double a, double b);

}  // namespace orv::commands::compare
