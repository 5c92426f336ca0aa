// What a new row holds in a column to which nothing is given.
#pragma once

#include <string>

#include "store/Schema.h"
#include "store/Value.h"

namespace orv::store {

/// The value of a column's default expression as Access files have them: a number, text between
/// quotation marks, `True`, `False`, `Yes`, `No`, `Date()`, `Now()`, `Time()`, with or without a
/// leading `=`. Null for an expression of another kind: the engine that can evaluate it is Access.
Value evaluateDefault(const std::string& expression, ColumnType type);

}  // namespace orv::store
