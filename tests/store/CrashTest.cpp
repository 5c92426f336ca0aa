// Whatever fails, and whenever the power goes: the file holds the commits that returned.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/Database.h"
#include "support/Corpus.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

constexpr const char* kFile = "orvdata.mdb";

using Rows = std::map<std::int32_t, std::pair<std::string, std::size_t>>;

/// Key, name and length of the note of every frame: enough to tell the states apart.
Rows framesOf(Database& database) {
  const auto table = database.table("Frame");
  const TableDefinition& definition = table->definition();
  auto column = [&](const char* name) { return definition.columns[*definition.findColumn(name)]; };
  Rows rows;
  for (TableScan scan = table->scan(); scan.next();) {
    const Value info = scan.row().value(column("Info"));
    rows[scan.row().value(column("FrameID")).toLong()] = {
        scan.row().value(column("name")).toText(),
        info.isNull() ? 0 : info.toText().size()};
  }
  // Reading by the index finds the same rows.
  Pager::ReadLock lock(database.pager());
  std::size_t entries = 0;
  for (IndexCursor cursor = table->index(0).first(); cursor.next(); ++entries) {
    EXPECT_TRUE(table->row(cursor.rowId()).has_value());
  }
  EXPECT_EQ(entries, rows.size());
  EXPECT_EQ(table->rowCount(), rows.size());
  return rows;
}

/// A run of commits over every kind of change: rows, notes in chains of pages, many rows at once
/// so that index pages split, growth of the file, deletion. `committed` is called at the
/// beginning and after each.
void changeFrames(const std::function<void(Database&)>& committed) {
  auto database = Database::open(kFile, "");
  committed(*database);
  const auto table = database->table("Frame");
  const TableDefinition& definition = table->definition();
  auto row = [&](const std::string& name, std::size_t noteLength) {
    std::vector<Value> values(definition.columns.size());
    values[*definition.findColumn("name")] = name;
    values[*definition.findColumn("Info")] = std::string(noteLength, 'n');
    values[*definition.findColumn("width")] = 0.06;
    return values;
  };
  const RowId first = table->insert(row("first", 20));
  committed(*database);
  table->insert(row("with a long note", 12000));
  committed(*database);
  {
    Transaction many(database->pager());
    for (int i = 0; i < 80; ++i) {
      table->insert(row("one of many, number " + std::to_string(i), i % 7 == 0 ? 500 : 0));
    }
    many.commit();
  }
  committed(*database);
  std::vector<Value> longer = row("first, grown", 3000);
  longer[*definition.findColumn("FrameID")] = table->row(first)->value(definition.columns[0]);
  table->update(first, longer);
  committed(*database);
  {
    Transaction many(database->pager());
    std::vector<RowId> doomed;
    for (TableScan scan = table->scan(); scan.next();) {
      doomed.push_back(scan.rowId());
    }
    for (std::size_t i = 0; i < doomed.size(); i += 2) {
      table->erase(doomed[i]);
    }
    many.commit();
  }
  committed(*database);
}

/// Every call and several outcomes of each are tried in a long run (ORV_LONG_TESTS=1), every few
/// calls and one outcome otherwise.
bool isLongRun() { return std::getenv("ORV_LONG_TESTS") != nullptr; }
std::size_t step() { return isLongRun() ? 1 : 5; }
unsigned outcomes() { return isLongRun() ? 8 : 1; }

class Crash : public testing::Test {
 protected:
  void SetUp() override {
    ORV_NEEDS_CORPUS();
    test::MemoryFiles files;
    load(files);
    changeFrames([&](Database& database) { states_.push_back(framesOf(database)); });
    calls_ = files.calls();
    ASSERT_EQ(states_.size(), 6U);
  }

  static void load(test::MemoryFiles& files) {
    files.load(test::corpusFolder() / "sources" / "orvdata-3.0.0.mdb", kFile);
  }

  /// The run, ended by a failure or not; gives the number of commits that returned.
  static std::size_t run() {
    std::size_t returned = 0;
    try {
      changeFrames([&](Database&) { ++returned; });
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), kStoreFailure) << error.what();
    }
    return returned == 0 ? 0 : returned - 1;
  }

  /// After a failure the file holds the commits that returned, and perhaps the one under way.
  void expectWholeState(std::size_t returned, const std::string& when) {
    auto database = Database::open(kFile, "");
    const Rows found = framesOf(*database);
    EXPECT_TRUE(found == states_[returned] ||
                (returned + 1 < states_.size() && found == states_[returned + 1]))
        << when << ", " << returned << " commits had returned";
  }

  std::vector<Rows> states_;  ///< after each commit of a run without failures
  std::size_t calls_ = 0;     ///< calls to the disk in such a run
};

TEST_F(Crash, LossOfPowerAtEveryCallLosesNoCommit) {
  for (std::size_t call = 0; call < calls_; call += step()) {
    for (unsigned seed = 0; seed < outcomes(); ++seed) {
      test::MemoryFiles files;
      load(files);
      files.losePowerAt(call);
      const std::size_t returned = run();
      files.restart(seed + static_cast<unsigned>(call) * 8);
      expectWholeState(returned, "power lost at call " + std::to_string(call));
      if (HasFailure()) {
        return;
      }
    }
  }
}

TEST_F(Crash, FailureOfAnyOneCallLosesNoCommit) {
  for (std::size_t call = 0; call < calls_; call += step()) {
    test::MemoryFiles files;
    load(files);
    files.failAt(call);
    const std::size_t returned = run();
    expectWholeState(returned, "call " + std::to_string(call) + " failed");
    if (HasFailure()) {
      return;
    }
  }
}

TEST_F(Crash, FullDiskUndoesTheCommitAndTheNextOneSucceedsWithRoom) {
  test::MemoryFiles files;
  load(files);
  files.limitSpace(static_cast<std::uint64_t>(files.size(kFile)) + 20000);
  const std::size_t returned = run();
  EXPECT_LT(returned, states_.size() - 1);
  expectWholeState(returned, "disk full");
  files.limitSpace(UINT64_MAX);
  EXPECT_EQ(run(), states_.size() - 1);
}

}  // namespace
}  // namespace orv::store::jet
