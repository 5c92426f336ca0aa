// Values made those of a column.
#pragma once

#include <string>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"

namespace orv::store::jet {

/// Whether fitValue() would give the same value; quick, and false where that takes a closer look.
bool fitsAsItIs(const Column& column, const Value& value);

/// `value` as its column holds it: converted to the column's type, and checked to fit it. Raises
/// kTypeMismatch or kOverflow naming the column, kDuplicateKey when a required column is Null or
/// text is empty where it must not be.
Value fitValue(const std::string& table, const Column& column, const Value& value);

}  // namespace orv::store::jet
