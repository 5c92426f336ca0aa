// A verb of the command line: `orv VERB ...`.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "cli/Console.h"
#include "cli/Failure.h"

namespace orv::cli {

/// Declares its arguments and its help when it is made, and does its work when it is run.
class Verb {
 public:
  /// `examples` are commands, a line each; `details` a paragraph on what the options do not tell.
  Verb(CLI::App& app, const std::string& name, const std::string& description,
       const std::string& examples, const std::string& details = "")
      : command_(*app.add_subcommand(name, description)), examples_(examples), details_(details) {
    command_.group("Verbs");
    command_.footer((details.empty() ? "" : details + "\n\n") + "Examples:\n" + examples);
  }
  Verb(const Verb&) = delete;
  Verb& operator=(const Verb&) = delete;
  virtual ~Verb() = default;

  /// Whether the command line names this verb.
  bool isChosen() const { return command_.parsed(); }

  /// Results go to standard output, messages to standard error. Raises Failure, and errors of the
  /// work as they come.
  virtual ExitCode run(Console& console) = 0;

  /// What its help is made of, for the manual.
  const CLI::App& command() const { return command_; }
  const std::string& examples() const { return examples_; }
  const std::string& details() const { return details_; }

 protected:
  CLI::App& command() { return command_; }

 private:
  CLI::App& command_;
  std::string examples_;
  std::string details_;
};

/// The program's arguments but for its verbs.
std::unique_ptr<CLI::App> makeApp();

/// All verbs, in the order of the help.
std::vector<std::unique_ptr<Verb>> makeVerbs(CLI::App& app);

std::unique_ptr<Verb> makeNewVerb(CLI::App& app);
std::unique_ptr<Verb> makeInfoVerb(CLI::App& app);
std::unique_ptr<Verb> makeListVerb(CLI::App& app);
std::unique_ptr<Verb> makeShowVerb(CLI::App& app);
std::unique_ptr<Verb> makeCopyVerb(CLI::App& app);
std::unique_ptr<Verb> makeAuditVerb(CLI::App& app);
std::unique_ptr<Verb> makeDiffVerb(CLI::App& app);
std::unique_ptr<Verb> makeIntegrateVerb(CLI::App& app);
std::unique_ptr<Verb> makeEditVerb(CLI::App& app);
std::unique_ptr<Verb> makeMergeVerb(CLI::App& app);
std::unique_ptr<Verb> makeHistoryVerb(CLI::App& app);
std::unique_ptr<Verb> makeUndoVerb(CLI::App& app);
std::unique_ptr<Verb> makeExportVerb(CLI::App& app);
std::unique_ptr<Verb> makeDeleteVerb(CLI::App& app);
std::unique_ptr<Verb> makeSqlVerb(CLI::App& app);
std::unique_ptr<Verb> makeTablesVerb(CLI::App& app);
std::unique_ptr<Verb> makeCheckVerb(CLI::App& app);
std::unique_ptr<Verb> makeCompactVerb(CLI::App& app);
std::unique_ptr<Verb> makeCompletionVerb(CLI::App& app);

}  // namespace orv::cli
