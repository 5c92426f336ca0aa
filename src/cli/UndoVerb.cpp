#include <iostream>

#include "cli/Arguments.h"
#include "cli/HistoryRows.h"
#include "cli/Verb.h"
#include "commands/AccessUse.h"
#include "commands/edit/EditHistory.h"

namespace orv::cli {

namespace {

class UndoVerb : public Verb {
 public:
  explicit UndoVerb(CLI::App& app)
      : Verb(
            app, "undo", "Take the last changes of an ORV database back",
            "  orv undo orvdata.mdb\n"
            "  orv undo orvdata.mdb 3\n"
            "  orv undo orvdata.mdb --redo\n"
            "  orv undo orvdata.mdb 2 --dry-run\n",
            "Takes back edits, deletions, copies, replaced records, stored integrated values and "
            "merges, as \"orv history\" lists them, in one commit. Where a record has been changed "
            "since by something else, that is told and nothing is changed.") {
    source_.addDatabase(command());
    command().add_option("N", count_, "How many changes; the last one unless given")->type_name("");
    command().add_flag("--redo", isRedo_, "Make the changes that were taken back last again");
    command().add_flag("--dry-run", isRehearsal_,
                       "Show what would be taken back, and whether it can be; change nothing");
    addFormat(command(), format_);
    addForce(command(), answers_.force);
    addQuiet(command(), answers_.quiet);
  }

  ExitCode run(Console& console) override {
    if (count_ < 1) throw wrongUse("The number of changes has to be 1 or more.");
    console.ui.answers(answers_);
    const auto database = source_.openDatabase(console);
    store::History history(*database);
    const std::string unusable = opening([&] { return history.whyUnusable(); });
    if (!unusable.empty()) throw Failure(kCannotOpen, unusable);
    if (!isRehearsal_ && !commands::mayBeChanged(*database, console.ui)) return kWrongUse;
    const auto result = reverse(history);
    const auto firstDone = result.works.begin() + static_cast<std::ptrdiff_t>(result.already);
    tellThoseOfBefore({result.works.begin(), firstDone});
    if (isRehearsal_) show(history, {firstDone, result.works.end()});
    if (!result.conflicts.empty()) return refuse(result.conflicts);
    if (isRehearsal_) return kAllWell;
    for (auto each = firstDone; each != result.works.end() && !answers_.quiet; ++each) {
      const store::HistoryWork& work = *each;
      std::cout << (isRedo_ ? "Made again: " : "Taken back: ") << work.title << " ("
                << commands::edit::historyTime(work)
                << (work.isFinished ? ")\n" : "; it was not finished)\n");
    }
    if (const std::string failure = history.takeFailure(); !failure.empty()) {
      std::cerr << "orv: The history could not be written: " << failure << '\n';
    }
    return kAllWell;
  }

 private:
  store::UndoResult reverse(store::History& history) const {
    return usedRightly([&] {
      const auto count = static_cast<std::size_t>(count_);
      const auto references = commands::edit::historyReferences();
      const auto wanted =
          isRehearsal_ ? store::History::Wanted::tried : store::History::Wanted::done;
      return isRedo_ ? history.redo(count, references, wanted)
                     : history.undo(count, references, wanted);
    });
  }

  /// Nothing had to be changed for these.
  void tellThoseOfBefore(const std::vector<store::HistoryWork>& works) const {
    for (const store::HistoryWork& work : works) {
      if (answers_.quiet) break;
      std::cerr << "orv: The database is already as it was " << (isRedo_ ? "after" : "before")
                << ": " << work.title << " (" << commands::edit::historyTime(work) << ").\n";
    }
  }

  /// As `orv history` shows them: before and after the change that would be taken back.
  void show(store::History& history, const std::vector<store::HistoryWork>& works) const {
    HistoryRows rows(format_, std::cout);
    for (const store::HistoryWork& work : works) rows.write(history.changes(work));
  }

  static ExitCode refuse(const std::vector<store::HistoryConflict>& conflicts) {
    for (const std::string& text : commands::edit::conflictTexts(conflicts)) {
      std::cerr << "orv: " << text << '\n';
    }
    std::cerr << "orv: Nothing was changed.\n";
    return kRecordsFailed;
  }

  SourceArgument source_;
  std::int32_t count_ = 1;
  bool isRedo_ = false;
  bool isRehearsal_ = false;
  Format format_ = Format::table;
  Answers answers_;
};

}  // namespace

std::unique_ptr<Verb> makeUndoVerb(CLI::App& app) {
  return std::make_unique<UndoVerb>(app);
}

}  // namespace orv::cli
