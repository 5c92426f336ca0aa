// Copying what differs: `orv copy A B --changed`.
#pragma once

#include <CLI/CLI.hpp>
#include <iostream>
#include <map>
#include <optional>
#include <string>

#include "cli/Arguments.h"
#include "commands/PasteRecords.h"
#include "commands/compare/Compare.h"

namespace orv::cli {

class ChangedCopy {
 public:
  /// Declares --changed, --only, --dry-run, --yes, --tolerance and --format. All want the first.
  CLI::Option* addTo(CLI::App& command, bool& yes);
  bool isWanted() const { return isWanted_; }

  /// Where the summary goes: what is written in a format that programs read has none.
  std::ostream& summaryStream() const { return format_ == Format::table ? std::cout : std::cerr; }

  /// What is given besides.
  struct Request {
    Node a;
    Node b;
    std::optional<commands::RecordKind> kind;
    commands::PasteOptions options;  ///< the group is empty where records keep theirs
    bool isQuiet = false;
  };

  struct Outcome {
    commands::PasteResult result = {};
    bool isDue = false;     ///< whether something is to be copied, in a rehearsal, too
    bool wasTried = false;  ///< whether it was no rehearsal
    /// Records that could not be read, or of which nobody knows which they would replace.
    std::size_t leftOut = 0;
  };

  /// Shows what is new in A or differs from B, asks, and copies it into B, each record in one
  /// commit. Raises Failure for a source that cannot be
  /// read, and where a group has to be given or somebody has to be asked, and cannot.
  Outcome run(Console& console, const Request& request) const;

 private:
  std::vector<std::size_t> wanted(const commands::compare::Comparison& comparison,
                                  const std::string& group, Outcome& outcome) const;
  void show(const Request& request, const commands::compare::Comparison& comparison,
            const std::vector<std::size_t>& pairs) const;
  bool isConfirmed(Console& console, const commands::compare::Comparison& comparison,
                   const std::vector<std::size_t>& pairs) const;

  bool isWanted_ = false;
  std::optional<commands::compare::State> only_;
  bool isRehearsal_ = false;
  const bool* yes_ = nullptr;
  double tolerance_ = 0;
  Format format_ = Format::table;
};

}  // namespace orv::cli
