#include <iostream>

#include "cli/Arguments.h"
#include "cli/HistoryRows.h"
#include "cli/Verb.h"
#include "commands/edit/EditHistory.h"

namespace orv::cli {

namespace {

class HistoryVerb : public Verb {
 public:
  explicit HistoryVerb(CLI::App& app)
      : Verb(app, "history", "List the last changes of an ORV database, which undo takes back",
             "  orv history orvdata.mdb\n"
             "  orv history orvdata.mdb 1 --format tsv\n",
             "Each change of a command is one, the last one is number 1. They are kept in a file "
             "beside the database, NAME.orv-history, which the database does not need; the oldest "
             "go when it grows past 128 MB. The environment variable ORV_HISTORY sets another "
             "size, in MB, or turns the history off (\"off\").") {
    source_.addDatabase(command());
    command()
        .add_option("N", number_, "Show what this change has done, a line a field")
        ->type_name("");
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    const auto database = source_.openDatabase(console);
    store::History history(*database);
    const std::string unusable = opening([&] { return history.whyUnusable(); });
    if (!unusable.empty()) std::cerr << "orv: " << unusable << '\n';
    const auto works = history.works();
    number_ ? showDetails(history, works) : listWorks(works);
    return kAllWell;
  }

 private:
  /// Those that were taken back come first, without a number.
  void listWorks(const std::vector<store::HistoryWork>& works) const {
    const auto writer = makeRowWriter(format_, {"number", "time", "change", "state"}, std::cout);
    const auto done = std::ranges::count(works, false, &store::HistoryWork::isUndone);
    for (std::size_t i = works.size(); i-- > 0;) {
      const store::HistoryWork& work = works[i];
      const auto number = static_cast<std::int32_t>(done) - static_cast<std::int32_t>(i);
      writer->row({work.isUndone ? store::Value() : store::Value(number),
                   commands::edit::historyTime(work), work.title,
                   work.isUndone      ? "taken back"
                   : work.isLost      ? "cannot be taken back"
                   : !work.isFinished ? "not finished"
                                      : ""});
    }
    writer->end();
  }

  void showDetails(store::History& history, const std::vector<store::HistoryWork>& works) const {
    const auto done = std::ranges::count(works, false, &store::HistoryWork::isUndone);
    if (*number_ < 1 || *number_ > done) {
      throw wrongUse("There is no change of this number: there are " + std::to_string(done) + ".");
    }
    const auto& work = works[static_cast<std::size_t>(done - *number_)];
    HistoryRows(format_, std::cout).write(history.changes(work));
  }

  SourceArgument source_;
  std::optional<std::int32_t> number_;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeHistoryVerb(CLI::App& app) {
  return std::make_unique<HistoryVerb>(app);
}

}  // namespace orv::cli
