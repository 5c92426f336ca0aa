// Memos and pictures: values too long for a row.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// Calls `visit(RowId)` for each part of the long value that the stored `definition` (a column's
/// bytes in a row) names, in order. Raises kCorruptFile for a chain that is broken or a loop.
///
/// A definition is the length (30 bits) with two flags, the pointer to the first part, and four
/// bytes of zero. The value follows it in the row, or is one row of a long-value page, or a chain
/// of such rows that each begin with a pointer to the next.
void forEachLongValuePart(Pager& pager, std::span<const std::uint8_t> definition, PageNumber page,
                          const std::function<void(RowId)>& visit);

/// The bytes of the whole value: of a memo, its text as the file's format has it.
Bytes readLongValue(Pager& pager, std::span<const std::uint8_t> definition, PageNumber page);

/// Stores `value` for `column` and returns the definition for the row. Short values go into it.
Bytes writeLongValue(Pager& pager, const Column& column, const Bytes& value);

/// Gives the space of a value's parts back.
void eraseLongValue(Pager& pager, const Column& column, std::span<const std::uint8_t> definition,
                    PageNumber page);

}  // namespace orv::store::jet
