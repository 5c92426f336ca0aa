#include <iostream>

#include "cli/Arguments.h"
#include "cli/Verb.h"
#include "store/Check.h"
#include "store/StoreError.h"

namespace orv::cli {

namespace {

/// Faults of a file, with the password of the IGDB where it wants one.
std::vector<store::CheckFault> faultsOf(const std::string& path) {
  try {
    return store::checkFile(path, "");
  } catch (const Error& error) {
    if (error.number() != store::kNotAuthenticated) throw;
    return store::checkFile(path, commands::kIgdbPassword);
  }
}

class CheckVerb : public Verb {
 public:
  explicit CheckVerb(CLI::App& app)
      : Verb(app, "check", "Check a whole database file: pages, rows, indexes, long values",
             "  orv check orvdata.mdb\n  orv check orvdata.mdb --format json\n") {
    command().add_option("FILE", path_, "The database")->required();
    addFormat(command(), format_);
  }

  ExitCode run(Console& /*console*/) override {
    const auto faults = opening([&] { return faultsOf(path_); });
    if (format_ == Format::table) {
      for (const store::CheckFault& fault : faults) std::cout << fault.toText() << '\n';
    } else {
      const auto writer =
          makeRowWriter(format_, {"table", "index", "page", "row", "fault"}, std::cout);
      for (const store::CheckFault& fault : faults) {
        writer->row({fault.table, fault.index, std::int64_t{fault.page}, fault.row, fault.what});
      }
      writer->end();
    }
    std::cerr << "orv: " << path_ << ": "
              << (faults.empty() ? "no faults" : counted(faults.size(), "fault")) << ".\n";
    return faults.empty() ? kAllWell : kRecordsFailed;
  }

 private:
  std::string path_;
  Format format_ = Format::table;
};

}  // namespace

std::unique_ptr<Verb> makeCheckVerb(CLI::App& app) {
  return std::make_unique<CheckVerb>(app);
}

}  // namespace orv::cli
