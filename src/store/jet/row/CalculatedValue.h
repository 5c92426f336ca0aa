// Values of calculated columns, which Access 2010 and later store with the row.
#pragma once

#include <cstdint>
#include <span>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// The value of a calculated column, of which `stored` is what the row (or the memo) holds: a
/// header, the length of the value at its end, and the value. Null for an empty one, as stands
/// where the calculation fails. Decimals have another form there than in other columns. Raises
/// kCorruptFile for a value that is too short for its type.
Value decodeCalculated(const Pager& pager, const Column& column,
                       std::span<const std::uint8_t> stored, PageNumber page);

}  // namespace orv::store::jet
