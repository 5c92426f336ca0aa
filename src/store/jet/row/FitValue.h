// Values made those of a column.
#pragma once

#include <optional>
#include <string>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"

namespace orv::store::jet {

/// `value` as its column holds it: converted to the column's type, and checked to fit it; nothing
/// where it is so already. Raises kTypeMismatch or kOverflow naming the column, kDuplicateKey when
/// a required column is Null or text is empty where it must not be.
std::optional<Value> changedToFit(const std::string& table, const Column& column,
                                  const Value& value);

/// The same, with the value itself where it is so already.
Value fitValue(const std::string& table, const Column& column, const Value& value);

}  // namespace orv::store::jet
