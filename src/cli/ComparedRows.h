// The differences of two sources on standard output.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/Arguments.h"
#include "cli/RowWriter.h"
#include "commands/compare/Compare.h"

namespace orv::cli {

class ComparedRows {
 public:
  /// The sources that were compared.
  ComparedRows(Node a, Node b) : a_(std::move(a)), b_(std::move(b)) {}

  /// Writes a line a difference; nothing at all where there is none. Of long texts a table has the
  /// place where they begin to differ.
  void write(const commands::compare::Comparison& comparison, Format format,
             std::ostream& out) const;

  /// Writes the differences of these pairs, ascending positions, as what a copy from A into B would
  /// do: what is only in A is added.
  void writeChanges(const commands::compare::Comparison& comparison,
                    const std::vector<std::size_t>& pairs, Format format, std::ostream& out) const;

 private:
  std::vector<store::Value> cells(std::string_view state,
                                  const commands::compare::ComparedPair& pair,
                                  const commands::compare::Difference& difference,
                                  Format format) const;

  Node a_;
  Node b_;
};

}  // namespace orv::cli
