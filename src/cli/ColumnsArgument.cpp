#include "cli/ColumnsArgument.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/Failure.h"
#include "commands/RecordFilter.h"
#include "model/Text.h"

namespace orv::cli {

namespace {

constexpr const char* kOption = "--columns";

}  // namespace

CLI::Option* ColumnsArgument::addTo(CLI::App& command, const std::string& help) {
  return command.add_option(kOption, names_, help)
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name("NAMES");
}

void ColumnsArgument::refuseIn(CLI::App& command) {
  const std::string verb = command.get_name();
  command
      .add_option_function<std::string>(
          kOption,
          [verb](const std::string&) {
            throw wrongUse(
                fmt::format("{} takes records whole: --columns chooses what list and delete show. "
                            "To write columns of records as a table: orv list SOURCE {} NAMES "
                            "--format csv.",
                            verb, kOption));
          })
      ->group("");
}

std::vector<std::size_t> ColumnsArgument::columnsOf(const commands::RecordTable& table) const {
  std::vector<std::size_t> columns;
  for (const std::string& name : names_) {
    const std::size_t column =
        usedRightly([&] { return commands::columnNamed(table, std::string(trimmed(name))); });
    if (std::ranges::find(columns, column) == columns.end()) columns.push_back(column);
  }
  for (std::size_t i = 0; names_.empty() && i < table.columns().size(); ++i) columns.push_back(i);
  return columns;
}

void ColumnsArgument::write(const commands::RecordTable& table,
                            const std::vector<std::size_t>& rows, Format format,
                            std::ostream& out) const {
  const std::vector<std::size_t> columns = columnsOf(table);
  std::vector<std::string> names;
  for (const std::size_t column : columns) names.push_back(table.columns()[column].name);
  const auto writer = makeRowWriter(format, names, out);
  for (const std::size_t row : rows) {
    std::vector<store::Value> values;
    for (const std::size_t column : columns) values.push_back(table.value(row, column));
    writer->row(values);
  }
  writer->end();
}

}  // namespace orv::cli
