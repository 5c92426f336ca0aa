#include <fmt/format.h>

#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "commands/IgdbPassword.h"
#include "commands/LongWork.h"
#include "errors/Counted.h"
#include "store/Check.h"
#include "store/StoreError.h"

namespace orv::cli {

namespace {

class CheckVerb : public Verb {
 public:
  explicit CheckVerb(CLI::App& app)
      : Verb(app, "check", "Check a whole database file: pages, rows, indexes, long values",
             "  orv check orvdata.mdb\n  orv check orvdata.mdb --verbose --format json\n",
             "Each fault is a line; the exit status is 1 where there are any. Remarks are "
             "counted.") {
    file_.addTo(command());
    command().add_flag("--verbose", verbose_,
                       "List also remarks: what is unusual but harms nothing");
    addFormat(command(), format_);
  }

  ExitCode run(Console& console) override {
    const store::CheckReport report = file_.use([&](const std::string& password) {
      commands::refuseSemicolon(file_.path());
      commands::refuseOtherThanFile(file_.path());
      return checkWithProgress(console.ui, password);
    });
    format_ == Format::table ? writeText(report) : writeRows(report);
    tellSummary(report);
    return report.sound() ? kAllWell : kRecordsFailed;
  }

 private:
  store::CheckReport checkWithProgress(CliUserInterface& ui, const std::string& password) const {
    const commands::LongWork work(ui, "Checking...");
    const auto progress = [&](std::size_t done, std::size_t pages) {
      ui.progressSteps(static_cast<int>(done), static_cast<int>(pages));
      if (ui.cancelled()) throw commands::Cancelled("The check was cancelled.");
    };
    return commands::withPasswordOfIgdb(password, [&](const std::string& tried) {
      return store::checkFile(file_.path(), tried, progress);
    });
  }

  /// Behind the faults; beside rows, which other programs read.
  void tellSummary(const store::CheckReport& report) const {
    std::ostream& out = format_ == Format::table ? std::cout : std::cerr << "orv: ";
    out << fmt::format("{}: {} in {}, {}, {} index entries.\n", file_.path(), summaryOf(report),
                       counted(report.tables, "table"), counted(report.rows, "row"),
                       report.indexEntries);
  }

  std::string summaryOf(const store::CheckReport& report) const {
    std::string text = report.sound() ? "no faults" : counted(report.faultCount, "fault");
    if (report.remarkCount != 0) {
      text += " and " + counted(report.remarkCount, "remark");
      text += verbose_ ? "" : " (listed with --verbose)";
    }
    return text;
  }

  void writeText(const store::CheckReport& report) const {
    for (const store::CheckFinding& fault : report.faults) std::cout << fault.toText() << '\n';
    if (!verbose_) return;
    for (const store::CheckFinding& remark : report.remarks) {
      std::cout << "remark: " << remark.toText() << '\n';
    }
  }

  void writeRows(const store::CheckReport& report) const {
    const auto writer = makeRowWriter(
        format_, {"kind", "table", "index", "page", "row", "what", "advice"}, std::cout);
    const auto write = [&](const char* kind, const store::CheckFinding& finding) {
      writer->row({kind, finding.table, finding.index, std::int64_t{finding.page},
                   finding.row < 0 ? store::Value() : store::Value(finding.row), finding.what,
                   finding.advice});
    };
    for (const store::CheckFinding& fault : report.faults) write("fault", fault);
    if (verbose_) {
      for (const store::CheckFinding& remark : report.remarks) write("remark", remark);
    }
    writer->end();
  }

  DatabaseArgument file_;
  bool verbose_ = false;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeCheckVerb(CLI::App& app) {
  return std::make_unique<CheckVerb>(app);
}

}  // namespace orv::cli
