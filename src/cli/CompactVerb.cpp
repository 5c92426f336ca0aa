#include <iostream>

#include "cli/Arguments.h"
#include "cli/Interrupts.h"
#include "cli/Verb.h"
#include "commands/CompactDatabase.h"
#include "store/Compact.h"

namespace orv::cli {

namespace {

class CompactVerb : public Verb {
 public:
  explicit CompactVerb(CLI::App& app)
      : Verb(
            app, "compact", "Write a database into a new file without free space",
            "  orv compact orvdata.mdb smaller.mdb\n  orv compact orvdata.mdb --in-place\n"
            "  orv compact damaged.mdb saved.mdb --repair\n"
            "  orv compact access97.mdb new.mdb --jet4\n",
            "Writes all that an Access file of format Jet 4 holds. A damaged file can be repaired, "
            "and it is told by table what is lost. A file of Access 97 (Jet 3) can be made into "
            "one "
            "of Access 2000 to 2003 (Jet 4): what cannot be kept (forms, reports, macros, modules) "
            "is named, and then nothing is written without --force.") {
    file_.addTo(command());
    command()
        .add_option("NEW", request_.target, "File to make; one that is there is never replaced")
        ->type_name("");
    CLI::Option* inPlace =
        command().add_flag("--in-place", inPlace_,
                           "Put the new file in place of the old one, which is kept as FILE.bak");
    command()
        .add_flag_callback(
            "--no-backup", [this] { request_.keepsBackup = false; },
            "With --in-place: do not keep the old file")
        ->needs(inPlace);
    CLI::Option* repair = command().add_flag_callback(
        "--repair", [this] { request_.work = Work::repair; },
        "Take what can be read of a damaged database, and tell what is lost");
    command()
        .add_flag_callback(
            "--jet4", [this] { request_.work = Work::convert; },
            "Make a file of Access 2000 to 2003 of one of Access 97; with --force also where "
            "forms, reports, macros and modules are left out")
        ->excludes(repair);
    addForce(command(), answers_.force);
    addQuiet(command(), answers_.quiet);
  }

  ExitCode run(Console& console) override {
    if (inPlace_ == !request_.target.empty()) {
      throw wrongUse("Either the name of a new file or --in-place has to be given.");
    }
    if (inPlace_ && request_.work != Work::compact) {
      throw wrongUse(
          request_.work == Work::repair
              ? "A repair never takes the place of the damaged file: name a new one."
              : "A converted file never takes the place of the old one: name a new one.");
    }
    if (answers_.force && !inPlace_ && request_.work != Work::convert) {
      throw wrongUse(
          "--force is for --in-place, where Access seems to have the database open, and for "
          "--jet4, where something cannot be kept.");
    }
    beforeSignalsEnd(store::removeUnfinishedFiles);
    if (answers_.force) request_.losses = store::Losses::accept;
    console.ui.answers(answers_);
    request_.path = file_.path();
    refuseStandardStream(request_.target);
    const auto result = file_.use([&](const std::string& password) {
      request_.password = password;
      return commands::compactDatabase(request_, console.ui);
    });
    if (result.refused) return kWrongUse;
    if (!answers_.quiet) writeSummary(result);
    return result.report.isWhole() ? kAllWell : kRecordsFailed;
  }

 private:
  using Work = commands::CompactRequest::Work;

  void writeSummary(const commands::CompactResult& result) const {
    for (const std::string& line : commands::describeSalvage(result.report)) {
      std::cout << line << '\n';
    }
    std::cout << (request_.work == Work::repair    ? "Repaired "
                  : request_.work == Work::convert ? "Converted "
                                                   : "Compacted ")
              << request_.path;
    if (!inPlace_) std::cout << " into " << result.target;
    std::cout << ", " << commands::describe(result.report) << ".\n";
    if (!result.backup.empty()) std::cout << "The old file is " << result.backup << ".\n";
  }

  commands::CompactRequest request_;
  bool inPlace_ = false;
  DatabaseArgument file_;
  Answers answers_;
};

}  // namespace

std::unique_ptr<Verb> makeCompactVerb(CLI::App& app) {
  return std::make_unique<CompactVerb>(app);
}

}  // namespace orv::cli
