#include <fmt/format.h>
#include <fmt/ranges.h>

#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/AccessUse.h"
#include "commands/edit/LookupRecords.h"
#include "errors/Counted.h"

namespace orv::cli {

namespace {

using commands::edit::LookupRecord;

class MergeVerb : public Verb {
 public:
  explicit MergeVerb(CLI::App& app)
      : Verb(app, "merge", "Merge groups, suppliers or frame types of an ORV database",
             "  orv merge orvdata.mdb --set suppliers 7 8 --into 3\n",
             "The records of those that are merged get the one that they are merged into, and the "
             "merged ones are deleted, in one commit. \"orv list DB --set suppliers\" shows the "
             "identifiers, and how many records have each.") {
    source_.addDatabase(command());
    command()
        .add_option("ID", identifiers_, "Identifiers of those that go")
        ->required()
        ->type_name("");
    source_.addSetOfNames(command());
    command().get_option("--set")->description("What is merged: groups, suppliers or frametypes");
    command()
        .add_option("--into", into_, "Identifier of the one that stays")
        ->required()
        ->type_name("ID");
    command().add_flag("--yes", answers_.yes, "Do not ask for a confirmation");
    addForce(command(), answers_.force);
    addQuiet(command(), answers_.quiet);
  }

  ExitCode run(Console& console) override {
    if (!source_.names()) {
      throw wrongUse("Say with --set what is merged: groups, suppliers or frametypes.");
    }
    if (!answers_.yes && !canAsk()) {
      throw wrongUse("Without a terminal to ask on, merging has to be confirmed with --yes.");
    }
    console.ui.answers(answers_);
    const auto ids = recordNumbers(identifiers_);
    const auto database = source_.openDatabase(console);
    const auto all = commands::edit::lookupRecords(*source_.names(), *database);
    const std::string what = describe(all, ids);
    const commands::Question question{"Merge " + what + "?", commands::kApplicationTitle,
                                      commands::Buttons::yesNoCancel, commands::Answer::no};
    if (console.ui.ask(question) != commands::Answer::yes) return kRecordsFailed;
    if (!commands::mayBeChanged(*database, console.ui)) return kWrongUse;
    usedRightly(
        [&] { commands::edit::mergeLookups(*source_.names(), ids, into_, *database, console.ui); });
    if (!answers_.quiet) std::cout << "Merged " << what << ".\n";
    return kAllWell;
  }

 private:
  /// "\"Acme\" (12 records) into \"Acme Glass\"". Raises Failure for what is not there.
  std::string describe(const std::vector<LookupRecord>& all,
                       const std::vector<std::int32_t>& ids) const {
    const auto find = [&](std::int32_t id) -> const LookupRecord& {
      const auto found = std::ranges::find(all, id, &LookupRecord::id);
      if (found != all.end()) return *found;
      throw wrongUse(
          fmt::format("There is no {} {}.", commands::edit::designOf(*source_.names()).one, id));
    };
    std::vector<std::string> names;
    for (const std::int32_t id : ids) {
      names.push_back(fmt::format("\"{}\" ({})", find(id).name,
                                  counted(static_cast<std::size_t>(find(id).uses()), "record")));
    }
    return fmt::format("{} into \"{}\"", fmt::join(names, ", "), find(into_).name);
  }

  SourceArgument source_;
  std::vector<std::string> identifiers_;
  std::int32_t into_ = 0;
  Answers answers_;
};

}  // namespace

std::unique_ptr<Verb> makeMergeVerb(CLI::App& app) {
  return std::make_unique<MergeVerb>(app);
}

}  // namespace orv::cli
