// Reads, checks and changes one database of any program, and tells what became of it:
//   try_file DATABASE FOLDER CHANGES SEED [PASSWORD...]
// Writes into FOLDER, for foreign readers: before.json, what the tables hold; and, where it could
// make changes (so many for each table, in a copy), changed.mdb and changed.json. The database
// stays as it is. Ends with 1 when the store has done what it must not.
#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <span>

#include "errors/Error.h"
#include "interop/RowsJson.h"
#include "store/Check.h"
#include "store/StoreError.h"
#include "support/MemoryFiles.h"

namespace {

using namespace orv::store;
using orv::test::ModelledTable;
using orv::test::RandomChanges;

constexpr const char* kFile = "changed.mdb";
constexpr int kParts = 3;  // after each of them the file is opened anew

class Trial {
 public:
  Trial(const std::filesystem::path& database, std::filesystem::path folder)
      : folder_(std::move(folder)) {
    files_.load(database, kFile);
  }

  /// Finds the password, where the file has one.
  void open(std::span<char*> passwords) {
    try {
      database_ = jet::Database::open(kFile, password_);
    } catch (const orv::Error& error) {
      if (error.number() != kNotAuthenticated || passwords.empty()) throw;
      password_ = passwords.front();
      open(passwords.subspan(1));
    }
  }

  void run(std::size_t changes, unsigned seed) {
    const CheckReport report = checkFile(kFile, password_);
    RandomChanges tables(kFile, password_, database_, seed, changes);
    writeRows(tables, "before.json");
    std::size_t rows = 0;
    for (const ModelledTable& model : tables.tables()) rows += model.rows.size();
    say(fmt::format("{}, {} tables, {} rows, {} remarks", database_->formatName(),
                    tables.tables().size(), rows, report.remarkCount));
    if (!report.sound()) {
      say(fmt::format("has {} faults, and is not changed: {}", report.faultCount,
                      report.faults.front().toText()));
      return;
    }
    const orv::store::Bytes before = files_.content(kFile);
    if (const std::string reason = whyReadOnly(); !reason.empty()) {
      say("cannot be written: " + reason);
    } else {
      database_.reset();
      change(tables, changes);
    }
    if (made_ == 0 && files_.content(kFile) != before)
      fail("the file was changed though no change was made");
  }

  bool failed() const { return failed_; }

 private:
  void change(RandomChanges& tables, std::size_t changes) {
    for (int part = 0; part < kParts; ++part) {
      tables.change(changes * tables.tables().size() / kParts);
      tables.reopen();
    }
    for (const ModelledTable& model : tables.tables()) {
      made_ += model.changes;
      tellUnsupported(model);
    }
    say(fmt::format("{} changes, {} rows refused", made_, tables.refusedRows()));
    compareRows(tables);
    const CheckReport report = checkFile(kFile, password_);
    for (const CheckFinding& fault : report.faults) fail("after the changes: " + fault.toText());
    if (made_ > 0) {
      files_.save(kFile, folder_ / kFile);
      writeRows(tables, "changed.json");
    }
  }

  void compareRows(const RandomChanges& expected) {
    const RandomChanges found(kFile, password_, jet::Database::open(kFile, password_), 0, 0);
    for (std::size_t i = 0; i < expected.tables().size(); ++i) {
      if (found.tables()[i].rows != expected.tables()[i].rows) {
        fail("table '" + expected.tables()[i].table->name() + "' has other rows than it should");
      }
    }
  }

  void tellUnsupported(const ModelledTable& model) {
    for (const auto& [reason, times] : model.unsupported) {
      say(fmt::format("table '{}', {} changes made, {} not: {}", model.table->name(), model.changes,
                      times, reason));
    }
  }

  std::string whyReadOnly() {
    try {
      jet::Transaction transaction(database_->pager());
      return {};
    } catch (const orv::Error& error) {
      return error.description();
    }
  }

  void writeRows(const RandomChanges& tables, const char* name) const {
    std::ofstream out(folder_ / name);
    orv::test::writeRows(tables.tables(), out);
  }
  static void say(const std::string& what) { std::cout << "  " << what << '\n'; }
  void fail(const std::string& what) {
    failed_ = true;
    say("WRONG: " + what);
  }

  orv::test::MemoryFiles files_;
  std::filesystem::path folder_;
  std::string password_;
  std::shared_ptr<jet::Database> database_;
  std::size_t made_ = 0;
  bool failed_ = false;
};

}  // namespace

int main(int count, char** arguments) {
  if (count < 5) {
    std::cerr << "usage: try_file DATABASE FOLDER CHANGES SEED [PASSWORD...]\n";
    return 2;
  }
  try {
    Trial trial(arguments[1], arguments[2]);
    try {
      trial.open({arguments + 5, static_cast<std::size_t>(count - 5)});
    } catch (const orv::Error& error) {
      std::cout << "  cannot be read: " << error.description() << '\n';
      return 0;
    }
    trial.run(std::stoul(arguments[3]), static_cast<unsigned>(std::stoul(arguments[4])));
    return trial.failed() ? 1 : 0;
  } catch (const std::exception& error) {
    std::cout << "  WRONG: " << error.what() << '\n';
    return 1;
  }
}
