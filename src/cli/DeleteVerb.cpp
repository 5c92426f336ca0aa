#include <iostream>
#include <set>

#include "cli/Arguments.h"
#include "cli/ColumnsArgument.h"
#include "cli/Verb.h"
#include "commands/AccessUse.h"
#include "commands/DeleteRecords.h"
#include "commands/edit/LookupRecords.h"
#include "errors/Counted.h"

namespace orv::cli {

namespace {

class DeleteVerb : public Verb {
 public:
  explicit DeleteVerb(CLI::App& app)
      : Verb(app, "delete", "Delete records of an ORV database of version 3.0.0",
             "  orv delete orvdata.mdb 12 13\n"
             "  orv delete orvdata.mdb 3 --set frames --yes\n"
             "  orv delete orvdata.mdb --where name:old --columns name,GroupName\n"
             "  orv delete orvdata.mdb 7 --set suppliers --yes\n",
             "\"orv undo\" brings records back, as long as the history of the database has them. "
             "Groups, suppliers and frame types are deleted where no record has them.") {
    source_.addDatabase(command());
    command().add_option("ID", identifiers_, "Identifiers of the records")->type_name("");
    command().add_flag("--yes", answers_.yes, "Do not ask for a confirmation");
    addForce(command(), answers_.force);
    source_.addSetOfNames(command());
    source_.addWhere(command());
    columns_.addTo(command(), "Show these columns of the records, parted by commas, before asking")
        ->excludes(addQuiet(command(), answers_.quiet));
  }

  ExitCode run(Console& console) override {
    if (!answers_.yes && !canAsk()) {
      throw wrongUse("Without a terminal to ask on, a deletion has to be confirmed with --yes.");
    }
    if (identifiers_.empty() && !source_.hasConditions()) {
      throw wrongUse("The records to delete have to be given by identifiers or with --where.");
    }
    console.ui.answers(answers_);
    if (source_.names()) return deleteNames(console);
    const Node node = source_.openRecordSet(console);
    const auto selection = source_.select(console, node, identifiers_);
    if (columns_.isGiven()) showRecords(node, selection);
    const auto result = commands::deleteRecords(console.session, selection, node);
    if (result.refused) return kWrongUse;
    if (!answers_.quiet) std::cout << result.summary() << '\n';
    return result.failed == 0 && !result.cancelled ? kAllWell : kRecordsFailed;
  }

 private:
  ExitCode deleteNames(Console& console) const {
    if (source_.hasConditions() || columns_.isGiven()) {
      throw wrongUse("--where and --columns are for panes, frames and shadings.");
    }
    const auto database = source_.openDatabase(console);
    const auto ids = recordNumbers(identifiers_);
    const commands::Question question{
        "Delete " + counted(ids.size(), commands::edit::designOf(*source_.names()).one) + "?",
        commands::kApplicationTitle, commands::Buttons::yesNoCancel, commands::Answer::no};
    if (console.ui.ask(question) != commands::Answer::yes) return kRecordsFailed;
    if (!commands::mayBeChanged(*database, console.ui)) return kWrongUse;
    usedRightly(
        [&] { commands::edit::deleteLookups(*source_.names(), ids, *database, console.ui); });
    if (!answers_.quiet) {
      std::cout << counted(ids.size(), commands::edit::designOf(*source_.names()).one)
                << " deleted.\n";
    }
    return kAllWell;
  }

  void showRecords(const Node& node, const sources::RecordSelection& selection) const {
    std::set<std::string> identifiers;
    for (std::int32_t i = 1; i <= selection.RecordsCount(); ++i) {
      identifiers.insert(selection.SelectedRecordID(i));
    }
    const auto table = commands::openRecordTable(node);
    table->readAll();
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < table->rowsRead(); ++row) {
      if (identifiers.contains(table->value(row, 0).toText())) rows.push_back(row);
    }
    columns_.write(*table, rows, Format::table, std::cout);
  }

  SourceArgument source_;
  ColumnsArgument columns_;
  std::vector<std::string> identifiers_;
  Answers answers_;
};

}  // namespace

std::unique_ptr<Verb> makeDeleteVerb(CLI::App& app) {
  return std::make_unique<DeleteVerb>(app);
}

}  // namespace orv::cli
