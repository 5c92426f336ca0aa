// What a new table may be, and the definition that it gets.
#pragma once

#include <string>
#include <string_view>

#include "store/Schema.h"
#include "store/jet/definition/TableDefinition.h"

namespace orv::store::jet {

inline constexpr std::size_t kMaxNameLength = 64;  ///< characters
inline constexpr std::size_t kMaxTableColumns = 255;
inline constexpr std::size_t kMaxTableIndexes = 32;

/// Raises kInvalidDesign unless `name` can be the name of `what` ("a table", "an index", ...): 1 to
/// 64 characters, no blank at the start, none of . ! ` [ ] and no control character.
void checkName(std::string_view what, const std::string& name);

/// The definition of a new table that has no place in the file yet. Text without a size takes
/// 255 characters, decimals without a precision have 18 digits. Raises kInvalidDesign for names
/// that are not possible or not different, for sizes out of range, for too many columns or
/// indexes, and for columns that no row could hold together; kNotSupported for a column type
/// that files of this format do not have.
TableDefinition defineTable(const TableInfo& design);

/// Adds an index to a definition; its tree and map have no place yet. Raises kInvalidDesign, and
/// kObjectExists when the table has an index of that name or two primary keys.
void defineIndex(TableDefinition& table, const IndexInfo& design);

}  // namespace orv::store::jet
