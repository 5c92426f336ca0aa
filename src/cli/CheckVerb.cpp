#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/LongWork.h"
#include "store/Check.h"
#include "store/StoreError.h"

namespace orv::cli {

namespace {

/// With the password of the IGDB where the file wants another than is given.
store::CheckReport check(const std::string& path, const std::string& password,
                         const store::CheckProgress& progress) {
  try {
    return store::checkFile(path, password, progress);
  } catch (const Error& error) {
    if (error.number() != store::kNotAuthenticated || !password.empty()) throw;
    return store::checkFile(path, commands::kIgdbPassword, progress);
  }
}

class CheckVerb : public Verb {
 public:
  explicit CheckVerb(CLI::App& app)
      : Verb(app, "check", "Check a whole database file: pages, rows, indexes, long values",
             "  orv check orvdata.mdb\n  orv check orvdata.mdb --format json\n") {
    command().add_option("FILE", path_, "The database")->required()->type_name("");
    password_.addTo(command());
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    const store::CheckReport report = opening([&] {
      commands::refuseSemicolon(path_);
      return password_.use(
          [&](const std::string& password) { return checkWithProgress(console.ui, password); });
    });
    format_ == Format::table ? writeText(report) : writeRows(report);
    std::cerr << "orv: " << path_ << ": "
              << (report.sound() ? "no faults" : counted(report.faults.size(), "fault")) << " in "
              << counted(report.tables, "table") << ", " << counted(report.rows, "row") << ", "
              << report.indexEntries << " index entries"
              << ".\n";
    return report.sound() ? kAllWell : kRecordsFailed;
  }

 private:
  store::CheckReport checkWithProgress(CliUserInterface& ui, const std::string& password) const {
    const commands::LongWork work(ui, "Checking...");
    return check(path_, password, [&](std::size_t done, std::size_t pages) {
      ui.progressSteps(static_cast<int>(done), static_cast<int>(pages));
      if (ui.cancelled()) throw std::runtime_error("The check was cancelled.");
    });
  }

  static void writeText(const store::CheckReport& report) {
    for (const store::CheckFault& fault : report.faults) std::cout << fault.toText() << '\n';
    for (const store::CheckFault& note : report.notes) {
      std::cout << "note: " << note.toText() << '\n';
    }
  }

  void writeRows(const store::CheckReport& report) const {
    const auto writer = makeRowWriter(
        format_, {"kind", "table", "index", "page", "row", "what", "advice"}, std::cout);
    const auto write = [&](const char* kind, const store::CheckFault& fault) {
      writer->row({kind, fault.table, fault.index, std::int64_t{fault.page},
                   fault.row < 0 ? store::Value() : store::Value(fault.row), fault.what,
                   fault.advice});
    };
    for (const store::CheckFault& fault : report.faults) write("fault", fault);
    for (const store::CheckFault& note : report.notes) write("note", note);
    writer->end();
  }

  std::string path_;
  PasswordArgument password_;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeCheckVerb(CLI::App& app) {
  return std::make_unique<CheckVerb>(app);
}

}  // namespace orv::cli
