// The columns of records that are shown.
#pragma once

#include <CLI/CLI.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "cli/RowWriter.h"
#include "commands/RecordTable.h"

namespace orv::cli {

class ColumnsArgument {
 public:
  /// Declares --columns.
  CLI::Option* addTo(CLI::App& command, const std::string& help);
  /// Declares it without a word in the help, for a verb that takes records whole, so that who tries
  /// it is told so.
  static void refuseIn(CLI::App& command);

  bool isGiven() const { return !names_.empty(); }
  /// Writes rows of a table, all of its columns where none are chosen; one that is named twice,
  /// once. Raises Failure for a column that is not there.
  void write(const commands::RecordTable& table, const std::vector<std::size_t>& rows,
             Format format, std::ostream& out) const;

 private:
  std::vector<std::size_t> columnsOf(const commands::RecordTable& table) const;

  std::vector<std::string> names_;
};

}  // namespace orv::cli
