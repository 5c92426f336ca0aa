// Two processes with the same file: both write, one is killed; what one changes the other sees.

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <set>
#include <thread>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "store/Connection.h"
#include "store/FileContent.h"
#include "store/StoreError.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

using namespace std::chrono_literals;
using enum ColumnType;

/// Another process, which runs `work` and tells numbers through a pipe. It ends with 0 when the
/// work returned, 1 when it raised; at the latest it is killed with this object.
class Process {
 public:
  using Tell = std::function<void(std::int32_t)>;

  explicit Process(const std::function<void(const Tell&)>& work) {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    id_ = ::fork();
    if (id_ == 0) {
      ::close(ends[0]);
      run(work, ends[1]);
    }
    ::close(ends[1]);
    told_ = ends[0];
  }
  ~Process() {
    kill();
    ::close(told_);
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// The next number that the process has told; none after its end.
  std::optional<std::int32_t> hear() {
    std::int32_t number = 0;
    return ::read(told_, &number, sizeof number) == sizeof number ? std::optional(number)
                                                                  : std::nullopt;
  }
  void kill() {
    if (id_ > 0) {
      ::kill(id_, SIGKILL);
      ::waitpid(id_, &status_, 0);
      id_ = -1;
    }
  }
  int wait() {
    ::waitpid(id_, &status_, 0);
    id_ = -1;
    return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
  }
  pid_t id() const { return id_; }
  /// Whether it ran until it was killed.
  bool wasKilled() const { return WIFSIGNALED(status_) && WTERMSIG(status_) == SIGKILL; }

 private:
  [[noreturn]] static void run(const std::function<void(const Tell&)>& work, int pipe) {
    try {
      work([&](std::int32_t number) {
        if (::write(pipe, &number, sizeof number) != sizeof number) ::_exit(2);
      });
    } catch (const std::exception& error) {
      std::fprintf(stderr, "the other process: %s\n", error.what());
      ::_exit(1);
    }
    ::_exit(0);
  }

  pid_t id_ = -1;
  int told_ = -1;
  int status_ = 0;
};

constexpr int kWindow = 5;  // batches of a writer that are there at a time

/// A file into which several writers put numbered batches of rows, each in one commit that also
/// deletes the batch that is kWindow older.
class Ledger {
 public:
  explicit Ledger(const std::string& path) : file_(Connection::openFile(path)) {}

  static void create(const std::string& path) {
    createTable(*createDatabase(path),
                test::design("Ledger",
                             "writer longInteger, batch longInteger, number longInteger, note memo",
                             "PrimaryKey primary: writer, batch, number; newest: batch-"));
  }

  static int sizeOf(int batch) { return 1 + batch * 7 % 90; }

  void commit(int writer, int batch) {
    file_->inOneCommit([&] {
      file_->deleteRows("Ledger",
                        fmt::format("writer = {} AND batch <= {}", writer, batch - kWindow));
      const auto table = file_->database().table("Ledger");
      for (int i = 0; i < sizeOf(batch); ++i) {
        const std::string note(i % 9 == 0 ? 200 * static_cast<std::size_t>(i) : 20, 'n');
        table->insert(std::vector<Value>{writer, batch, i, note});
      }
    });
  }

  /// The batches of a writer; each must be whole.
  std::set<int> batchesOf(int writer) {
    std::set<int> batches;
    const auto rows = file_->openRecordset(
        fmt::format("SELECT batch, Count(*) FROM Ledger WHERE writer = {} GROUP BY batch", writer));
    for (; !rows->eof(); rows->moveNext()) {
      const int batch = *batches.insert(rows->value(0).toLong()).first;
      EXPECT_EQ(rows->value(1).toLong(), sizeOf(batch)) << "batch " << batch;
    }
    return batches;
  }

 private:
  std::shared_ptr<Connection> file_;
};

/// The batches that are there when `last` was the last to be committed.
std::set<int> windowUpTo(int last) {
  std::set<int> batches;
  for (int batch = std::max(0, last - kWindow + 1); batch <= last; ++batch) batches.insert(batch);
  return batches;
}

class Processes : public testing::Test {
 protected:
  Processes() { Ledger::create(path_); }

  test::TemporaryFolder folder_;
  std::string path_ = folder_ / "shared.mdb";
};

/// Twelve kills, or in a long run (ORV_LONG_TESTS=1) three hundred.
TEST_F(Processes, AWriterThatIsKilledLeavesWholeCommitsAndTheOtherGoesOn) {
  const int rounds = std::getenv("ORV_LONG_TESTS") != nullptr ? 300 : 12;
  constexpr int kSurvivor = 1;
  constexpr int kKilled = 2;
  std::mt19937 random(1);
  int survivorsLast = -1;
  int killedLast = -1;
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    Process other([&](const Process::Tell& tell) {
      Ledger ledger(path_);
      for (int batch = killedLast + 1;; ++batch) {
        ledger.commit(kKilled, batch);
        tell(batch);
      }
    });
    if (round % 2 == 0) {  // else it may be killed while it opens the file
      killedLast = other.hear().value_or(killedLast);
    }
    const auto end = std::chrono::steady_clock::now() + 1ms * (random() % 100);
    std::thread killer([&] {
      std::this_thread::sleep_until(end);
      other.kill();
    });
    Ledger ledger(path_);
    for (int more = 3; more > 0; more -= std::chrono::steady_clock::now() > end ? 1 : 0) {
      ledger.commit(kSurvivor, ++survivorsLast);
    }
    killer.join();
    EXPECT_TRUE(other.wasKilled());
    while (const auto told = other.hear()) killedLast = *told;
    EXPECT_EQ(ledger.batchesOf(kSurvivor), windowUpTo(survivorsLast));
    const std::set<int> found = ledger.batchesOf(kKilled);
    if (found == windowUpTo(killedLast + 1)) {
      ++killedLast;  // it was killed between committing and telling
    }
    EXPECT_EQ(found, windowUpTo(killedLast));
    test::expectSound(path_);
  }
  EXPECT_GT(killedLast, 0);
}

TEST_F(Processes, WhatOneChangesTheOtherReadsAnew) {
  const auto database = Database::open(path_, "");
  const auto table = database->table("Ledger");
  const RowId row = table->insert(std::vector<Value>{1, 1, 1, "before"});
  const auto noteOf = [&] { return table->row(row)->value(table->definition().columns[3]); };
  EXPECT_EQ(noteOf().toText(), "before");
  EXPECT_EQ(database->find("Later"), nullptr);
  Process other([&](const Process::Tell&) {
    const auto again = Database::open(path_, "");
    const auto theirs = again->table("Ledger");
    theirs->update(row, std::vector<Value>{1, 1, 1, "after"});
    theirs->insert(std::vector<Value>{1, 1, 2, "more"});
    createTable(*again, {.name = "Later", .columns = {{"number", longInteger}}});
  });
  ASSERT_EQ(other.wait(), 0);
  EXPECT_EQ(noteOf().toText(), "after");
  EXPECT_EQ(table->rowCount(), 2U);
  EXPECT_EQ(test::rowsOf(*table).size(), 2U);
  EXPECT_NE(database->find("Later"), nullptr);
  EXPECT_THROW(table->insert(std::vector<Value>{1, 1, 2, "again"}), Error);
  table->erase(row);
  test::expectSound(path_);
}

TEST_F(Processes, AFileThatAnotherKeepsLockedIsSaidToBeInUseByIt) {
  Process other([&](const Process::Tell& tell) {
    const auto database = Database::open(path_, "");
    Pager::WriteLock lock(database->pager());
    tell(0);
    std::this_thread::sleep_for(60s);
  });
  ASSERT_TRUE(other.hear().has_value());
  const auto database = Database::open(path_, "");
  const auto table = database->table("Ledger");
  EXPECT_EQ(table->rowCount(), 0U) << "reading need not wait for a writer that only prepares";
  const auto insert = [&] { table->insert(std::vector<Value>{1, 1, 1, ""}); };
  const test::Raised raised = test::raisedBy(insert);
  EXPECT_EQ(raised.number, kStoreFailure);
  EXPECT_THAT(raised.description,
              testing::HasSubstr("by store_test (process " + std::to_string(other.id()) + ")"));
  other.kill();
  insert();
}

/// A file system may have times of whole seconds, or a program may set them back.
TEST_F(Processes, AChangeIsNoticedWithoutItsTime) {
  const std::string firstHasRead = folder_ / "read";
  Process other([&](const Process::Tell& tell) {
    Ledger ledger(path_);
    tell(0);
    while (!std::filesystem::exists(firstHasRead)) std::this_thread::sleep_for(1ms);
    const auto time = std::filesystem::last_write_time(path_);
    ledger.commit(2, 3);
    std::filesystem::last_write_time(path_, time);
    tell(1);
    std::this_thread::sleep_for(60s);  // without closing the file, which would change it again
  });
  ASSERT_EQ(other.hear(), 0);
  Ledger ledger(path_);
  EXPECT_TRUE(ledger.batchesOf(2).empty());
  std::filesystem::create_directory(firstHasRead);
  ASSERT_EQ(other.hear(), 1);
  EXPECT_EQ(ledger.batchesOf(2), std::set<int>{3});
}

TEST_F(Processes, ACheckLetsAWriterInSometimesAndTellsWhatIsThereThen) {
  {
    Ledger ledger(path_);
    for (int batch = 84; batch < 90; ++batch) ledger.commit(1, batch);
  }
  Process other([&](const Process::Tell& tell) {
    Ledger ledger(path_);
    tell(0);
    for (int batch = 12; batch < 20; ++batch) ledger.commit(2, batch);
    tell(1);
    std::this_thread::sleep_for(60s);
  });
  ASSERT_EQ(other.hear(), 0);
  int beginnings = 0;
  std::size_t last = SIZE_MAX;
  const CheckReport report = checkFile(path_, "", [&](std::size_t pages, std::size_t) {
    const bool begins = pages < last;
    beginnings += begins ? 1 : 0;
    last = pages;
    if (begins) std::this_thread::sleep_for(100ms);  // the writer comes to wait meanwhile
  });
  EXPECT_LE(beginnings, 5);
  EXPECT_EQ(other.hear(), 1);
  EXPECT_TRUE(report.sound());
  EXPECT_EQ(Ledger(path_).batchesOf(2), (std::set<int>{15, 16, 17, 18, 19}));
}

}  // namespace
}  // namespace orv::store::jet
