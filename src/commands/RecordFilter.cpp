#include "commands/RecordFilter.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "commands/CellFilter.h"
#include "commands/CellText.h"
#include "errors/Error.h"
#include "model/Text.h"

namespace orv::commands {

namespace {

CellFilter filterOf(const ColumnCondition& condition, const RecordColumn& column) {
  CellFilter filter(condition.filter, column.isNumber);
  if (filter.isFinished()) return filter;
  const std::string& name = condition.column;
  const std::string known =
      column.isNumber
          ? fmt::format(
                "numbers: \"{0}>5\", >=, < and <= with a number alone, \"{0}=5\", "
                "\"{0}:3..6\" with both ends, and \"{0}=\" for empty ones",
                name)
          : fmt::format("texts: \"{0}=word\", \"{0}:part\", and \"{0}=\" for empty ones", name);
  throw Error(kInvalidCall,
              fmt::format("\"{}\" is not understood. Conditions on this column are of {}.",
                          condition.text, known));
}

}  // namespace

ColumnCondition parseCondition(const std::string& text) {
  const auto at = text.find_first_of("<>=:");
  if (at == std::string::npos || at == 0) {
    throw Error(kInvalidCall, "\"" + text +
                                  "\" is no condition. Conditions are such as \"thickness>5\", "
                                  "\"thickness:3..6\", \"group=Demo\" and \"name:clear\".");
  }
  const auto filter = at + (text[at] == ':' ? 1 : 0);
  return {std::string(trimmed(text.substr(0, at))), text.substr(filter), text};
}

std::size_t columnNamed(const RecordTable& table, const std::string& name) {
  const auto& columns = table.columns();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (equalIgnoringCase(columns[i].name, name) || equalIgnoringCase(columns[i].title, name)) {
      return i;
    }
  }
  std::vector<std::string_view> names;
  for (const RecordColumn& column : columns) names.push_back(column.name);
  throw Error(kInvalidCall, fmt::format("There is no column \"{}\". There are: {}.", name,
                                        fmt::join(names, ", ")));
}

std::vector<std::size_t> matchingRows(RecordTable& table,
                                      const std::vector<ColumnCondition>& conditions) {
  struct Filter {
    std::size_t column;
    CellFilter cells;
  };
  std::vector<Filter> filters;
  for (const ColumnCondition& condition : conditions) {
    const std::size_t column = columnNamed(table, condition.column);
    filters.push_back({column, filterOf(condition, table.columns()[column])});
  }
  table.readAll();
  std::vector<std::size_t> rows;
  for (std::size_t row = 0; row < table.rowsRead(); ++row) {
    const bool isMet = std::ranges::all_of(filters, [&](const Filter& filter) {
      return filter.cells.accepts(table.value(row, filter.column), kAllDigits);
    });
    if (isMet) rows.push_back(row);
  }
  return rows;
}

}  // namespace orv::commands
