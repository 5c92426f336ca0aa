// What the history of a database bears: losses of power, failures, other files, other programs.
#include <algorithm>
#include <array>
#include <optional>

#include "database/DatabaseDump.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "support/MemoryFiles.h"

namespace orv::test {
namespace {

using store::Connection;
using store::History;

constexpr const char* kKept = "glass.mdb";
constexpr const char* kHistoryFile = "glass.mdb.orv-history";

class HistoryTest : public testing::Test {
 protected:
  HistoryTest() {
    const auto dc = database::CreateEmptyDatabase(kKept);
    database_.InsertPane(*makePane("there"), *dc);
    before_ = dumpOf(*dc);
  }

  /// A deletion; and, as a work of two commits, a record of another kind with a memo and a picture.
  void change(Connection& dc) {
    std::optional<History::Scope> work;
    if (isLarge_) work.emplace(dc, "Change");
    database_.DeleteGlazing(1, dc);
    if (!isLarge_) return;
    FrameDataClass frame;
    frame.name("frame");
    frame.Info(std::string(3000, 'i'));
    frame.picture(store::Bytes(9000, 0x5A));
    database_.InsertFrame(frame, dc);
  }

  static std::shared_ptr<Connection> open(std::uint64_t largest = History::kLargest) {
    auto dc = Connection::openFile(kKept);
    History(*dc).keep(largest);
    return dc;
  }

  /// Whether it was told to be done.
  static bool done(const std::function<void()>& work) { return raisedBy(work).number == 0; }

  /// Makes the change, and takes it back, while trouble begins at one call after the other. In the
  /// end the power goes.
  void tryEverywhere(const std::function<void(std::size_t)>& trouble) {
    for (const bool isLarge : {true, false}) {
      isLarge_ = isLarge;
      tryAtEachCall(trouble);
    }
  }

  void tryAtEachCall(const std::function<void(std::size_t)>& trouble) {
    files_.copy(kKept, "kept.mdb");
    bool isUndone = false;
    std::size_t call = 0;
    for (; !isUndone; ++call) {
      SCOPED_TRACE("call " + std::to_string(call));
      files_.copy("kept.mdb", kKept);
      files_.remove(kHistoryFile);
      bool isKept = false;
      {
        const auto dc = open();
        trouble(call);
        isKept = done([&] { change(*dc); }) && History(*dc).takeFailure().empty();
        isUndone = isKept && done([&] { History(*dc).undo(); });
      }
      files_.restart(7);
      judge(isKept, isUndone);
    }
    EXPECT_GT(call, 20U);
  }

  /// Nothing but the state before comes of taking back what the history has.
  void judge(bool isKept, bool isUndone) {
    const auto dc = open();
    EXPECT_TRUE(store::checkFile(kKept, "").sound());
    const auto works = History(*dc).works();
    EXPECT_TRUE(!isUndone || dumpOf(*dc) == before_);
    ASSERT_TRUE(!isKept || works.size() == 1) << "what was told to be kept is lost";
    const auto whole = dumpOf(*dc);
    if (!History(*dc).whyUnusable().empty()) {
      EXPECT_FALSE(isKept) << "what was told to be kept is damaged";
      EXPECT_FALSE(done([&] { History(*dc).undo(); }));
      EXPECT_EQ(dumpOf(*dc), whole);
      return;
    }
    if (works.empty() || works.front().isUndone || works.front().isLost) return;
    const auto result = History(*dc).undo();
    EXPECT_TRUE(works.front().isFinished || !isKept);
    EXPECT_TRUE(!result.conflicts.empty() || dumpOf(*dc) == before_);
    EXPECT_TRUE(result.conflicts.empty() || dumpOf(*dc) == whole);
    EXPECT_TRUE(result.conflicts.empty());
    EXPECT_TRUE(store::checkFile(kKept, "").sound());
  }

  bool isLarge_ = true;
  MemoryFiles files_;
  ScriptedQuestions questions_;
  database::ORV_DatabaseInterface database_{questions_};
  DatabaseDump before_;
};

TEST_F(HistoryTest, BearsEveryLossOfPower) {
  tryEverywhere([&](std::size_t call) { files_.losePowerAt(call); });
}

TEST_F(HistoryTest, BearsEveryFailureOfTheDisk) {
  tryEverywhere([&](std::size_t call) { files_.failAt(call); });
}

TEST_F(HistoryTest, AnUndoneSavepointLeavesNoTrace) {
  const auto dc = open();
  database_.InsertPane(*makePane("second"), *dc);
  const auto second = dumpOf(*dc);
  dc->inOneCommit([&] {
    database_.InsertPane(*makePane("third"), *dc);
    EXPECT_THROW(database_.DeleteGlazing(77, *dc), Error);
    // The batch is refused as a whole, and what came before it stays.
    auto rows =
        dc->openRecordset("Pane", store::CursorType::static_, store::LockType::batchOptimistic);
    for (const int key : {40, 1}) {
      rows->addNew();
      rows->setValue("PaneID", key);
    }
    EXPECT_THROW(rows->updateBatch(), Error);
  });
  EXPECT_THROW(dc->inOneCommit([&] {
    database_.DeleteGlazing(1, *dc);
    throw Error(kInvalidCall);
  }),
               Error);
  EXPECT_EQ(History(*dc).works().size(), 2U);
  EXPECT_TRUE(History(*dc).undo().conflicts.empty());
  EXPECT_EQ(dumpOf(*dc), second);
}

TEST_F(HistoryTest, IsBoundedByItsOldestWorks) {
  const auto dc = open(8'000);
  files_.copy(kKept, std::string(kHistoryFile) + "-new");  // of a program that was killed
  for (int i = 0; i < 40; ++i) {
    database_.InsertPane(*makePane("pane " + std::to_string(i)), *dc);
    EXPECT_LE(files_.size(kHistoryFile), 8'000);
  }
  History history(*dc);
  const auto works = history.works();
  EXPECT_GT(works.size(), 5U);
  EXPECT_LT(works.size(), 40U);
  EXPECT_TRUE(history.undo(works.size()).conflicts.empty());
  EXPECT_EQ(dc->openRecordset("Pane", store::CursorType::static_)->recordCount(),
            41 - static_cast<std::int64_t>(works.size()));
}

/// Its records, which begin behind a header of 64 bytes, each with its size at its byte 24.
std::vector<store::Bytes> recordsOf(store::jet::File& file) {
  std::vector<store::Bytes> records;
  for (std::uint64_t at = 64; at < file.size(); at += records.back().size()) {
    std::array<std::uint8_t, 8> size{};
    file.read(at + 24, size.data(), size.size());
    records.emplace_back(size[0] + 256 * size[1] + 65536 * size[2]);
    file.read(at, records.back().data(), records.back().size());
  }
  return records;
}

void write(store::jet::File& file, const std::vector<store::Bytes>& records) {
  std::uint64_t at = 64;
  for (const auto& record : records) {
    file.write(at, record.data(), record.size());
    at += record.size();
  }
  file.truncate(at);
}

/// As when two programs have changed the database at the same time.
TEST_F(HistoryTest, TheCommitsOfAWorkAreFoundAmongThoseOfAnother) {
  DatabaseDump second;
  {
    const auto dc = open();
    change(*dc);  // two commits and an end, then a commit and an end
    database_.InsertPane(*makePane("second"), *dc);
    second = dumpOf(*dc);
  }
  auto records = recordsOf(*files_.openCompanion(kHistoryFile));
  ASSERT_EQ(records.size(), 5U);
  std::rotate(records.begin() + 1, records.begin() + 3, records.begin() + 4);
  write(*files_.openCompanion(kHistoryFile), records);
  const auto dc = open();
  History history(*dc);
  ASSERT_EQ(history.works().size(), 2U);
  EXPECT_EQ(history.works()[1].commits, 2);
  EXPECT_TRUE(history.works()[1].isFinished);
  const auto tried = history.undo(2, {}, History::Wanted::tried);
  EXPECT_EQ(tried.works.size(), 2U);
  EXPECT_EQ(dumpOf(*dc), second) << "it was only tried";
  EXPECT_TRUE(history.undo(2).conflicts.empty());
  EXPECT_EQ(dumpOf(*dc), before_);
}

TEST_F(HistoryTest, ADamagedHistoryIsToldAndSetAside) {
  {
    const auto dc = open();
    for (const char* name : {"a", "b", "c"}) database_.InsertPane(*makePane(name), *dc);
  }
  const auto file = files_.openCompanion(kHistoryFile);
  auto records = recordsOf(*file);
  ASSERT_EQ(records.size(), 6U);
  records[2][9] ^= 1;
  write(*file, records);
  const auto dc = open();
  const auto there = dumpOf(*dc);
  History history(*dc);
  EXPECT_NE(history.whyUnusable().find("is damaged"), std::string::npos);
  EXPECT_EQ(history.works().size(), 1U) << "those before the damage";
  EXPECT_FALSE(done([&] { history.undo(); }));
  EXPECT_EQ(dumpOf(*dc), there);
  database_.InsertPane(*makePane("d"), *dc);
  EXPECT_EQ(history.takeNameOfUnusable(), std::string(kHistoryFile) + "-1");
  EXPECT_EQ(history.works().size(), 1U);
  EXPECT_TRUE(history.undo().conflicts.empty());
  EXPECT_EQ(dumpOf(*dc), there);
}

TEST_F(HistoryTest, AnotherDatabasesHistoryIsNotUsed) {
  {
    const auto dc = open();
    change(*dc);
  }
  files_.copy(kHistoryFile, "other.mdb.orv-history");
  Connection::create("other.mdb", [](Connection& dc) {
    dc.createTable({.name = "Frame", .columns = {{.name = "name"}}});
  });
  const auto setAge = [](const char* file, double ofThird) {
    const auto dc = Connection::openFile(file);
    auto age =
        dc->openRecordset("MSysObjects", store::CursorType::keyset, store::LockType::optimistic);
    for (int i = 1; !age->eof(); age->moveNext(), ++i) {
      age->setValue("DateCreate", store::Date{i == 3 ? ofThird : 40000});
      age->update();
    }
  };
  setAge("other.mdb", 40000);
  const auto other = Connection::openFile("other.mdb");
  History history(*other);
  history.keep();
  EXPECT_NE(history.whyUnusable(), "");
  EXPECT_TRUE(history.works().empty());
  addRow(*other, "Frame", {{"name", "x"}});
  EXPECT_EQ(history.whyUnusable(), "");
  EXPECT_EQ(history.works().size(), 1U);
  // It is known by the age of the oldest of its objects.
  files_.copy("other.mdb", "third.mdb");
  files_.copy("other.mdb.orv-history", "third.mdb.orv-history");
  for (const auto& [age, works] : {std::pair(40001, 1U), std::pair(39999, 0U)}) {
    setAge("third.mdb", age);
    EXPECT_EQ(History(*Connection::openFile("third.mdb")).works().size(), works);
  }
}

}  // namespace
}  // namespace orv::test
