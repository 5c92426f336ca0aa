// The choice of records by conditions on their fields.
#pragma once

#include <string>
#include <vector>

#include "commands/RecordTable.h"

namespace orv::commands {

/// A condition on a column, as CellFilter has it.
struct ColumnCondition {
  std::string column;
  std::string filter;
  std::string text;  ///< as it was typed
};

/// "thickness>5" or "name:clear": a column, and from the first of "<", ">", "=" on the filter, or
/// what follows a colon. Raises kInvalidCall for a text without any of them.
ColumnCondition parseCondition(const std::string& text);

/// The position of the column of this name or title. Raises kInvalidCall, which names the columns
/// that there are.
std::size_t columnNamed(const RecordTable& table, const std::string& name);

/// The rows, all of which are read, that meet every condition. Raises kInvalidCall for a condition
/// that is not understood whole, so that it never chooses records by a part of it.
std::vector<std::size_t> matchingRows(RecordTable& table,
                                      const std::vector<ColumnCondition>& conditions);

}  // namespace orv::commands
