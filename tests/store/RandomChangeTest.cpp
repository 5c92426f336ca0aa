// Thousands of random changes on tables with every kind of index, compared with a model in memory.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

#include "store/FileContent.h"
#include "store/History.h"
#include "store/RandomTables.h"
#include "store/jet/index/IndexKey.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

/// An entry as the tree orders them: the key and the row's place.
Bytes entryOf(std::span<const std::uint8_t> key, RowId row) {
  Bytes entry(key.begin(), key.end());
  for (const int shift : {16, 8, 0}) entry.push_back(static_cast<std::uint8_t>(row.page >> shift));
  entry.push_back(row.row);
  return entry;
}

void expectIndexRight(const test::ModelledTable& model, const RealIndex& index) {
  const TableDefinition& definition = model.table->definition();
  const std::string what = model.table->name() + " index " + std::to_string(index.number);
  std::vector<Bytes> expected;
  std::set<Bytes> keys;
  for (const auto& [id, values] : model.rows) {
    if (!hasEntry(index, values)) continue;
    const Bytes key = makeKey(definition, index, values);
    keys.insert(key);
    expected.push_back(entryOf(key, id));
  }
  EXPECT_EQ(model.table->keyCount(index.number), keys.size()) << what;
  std::ranges::sort(expected);
  std::vector<Bytes> found;
  for (IndexCursor cursor = model.table->index(index.number).first(); cursor.next();) {
    found.push_back(entryOf(cursor.key(), cursor.rowId()));
  }
  EXPECT_TRUE(found == expected) << what;
}

void expectAsModel(const test::ModelledTable& model) {
  Pager::ReadLock lock(model.table->pager());
  std::map<RowId, std::vector<Value>> rows;
  for (TableScan scan = model.table->scan(); scan.next();) {
    EXPECT_TRUE(rows.emplace(scan.rowId(), test::valuesOf(*model.table, scan.row())).second);
  }
  EXPECT_TRUE(rows == model.rows) << model.table->name();
  EXPECT_EQ(model.table->rowCount(), model.rows.size());
  EXPECT_TRUE(model.unsupported.empty()) << model.unsupported.begin()->first;
  for (const RealIndex& index : model.table->definition().realIndexes) {
    expectIndexRight(model, index);
  }
}

void expectAsModel(const test::RandomTables& tables) {
  for (const test::ModelledTable& model : tables.tables()) expectAsModel(model);
  test::expectSound(test::kFile);
}

/// One seed and 1,500 changes; in a long run (ORV_LONG_TESTS=1) 30 and 10,000 each.
TEST(RandomChanges, KeepRowsAndIndexesAsAModelInMemory) {
  const bool isLong = std::getenv("ORV_LONG_TESTS") != nullptr;
  const unsigned seeds = isLong ? 30 : 1;
  for (unsigned seed = 1; seed <= seeds && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::MemoryFiles files;
    test::RandomTables tables(test::kFile, seed);
    for (int part = 0; part < 5; ++part) {
      tables.change(isLong ? 2000 : 300);
      expectAsModel(tables);
      tables.reopen();
    }
    expectAsModel(tables);
    if (!isLong) test::expectBytes(test::kFile, 0xc05aad21a1a29a62);
  }
}

TEST(RandomChanges, AreTakenBackAndMadeAgain) {
  test::MemoryFiles files;
  test::RandomTables tables(test::kFile, 5);
  const auto connection = Connection::openFile(test::kFile);
  History history(*connection);
  history.keep();
  std::vector<std::string> states;
  const auto state = [&] { return test::describe(connection->database()); };
  for (int work = 0; work < 12; ++work) {
    states.push_back(state());
    const History::Scope scope(*connection, fmt::format("work {}", work));
    tables.change(5 + 6 * work);
  }
  states.push_back(state());
  std::size_t at = 12;
  for (const int step : {-1, -1, 2, -3, 1, -4, -5, 3, 7, -2, -9, 12}) {
    const auto count = static_cast<std::size_t>(std::abs(step));
    at = static_cast<std::size_t>(static_cast<int>(at) + step);
    const UndoResult result = step < 0 ? history.undo(count) : history.redo(count);
    EXPECT_TRUE(result.conflicts.empty() && result.already == 0) << step;
    EXPECT_EQ(result.works.size(), count);
    EXPECT_TRUE(state() == states[at]) << "after work " << at;
    EXPECT_EQ(history.works().at(at < 12 ? at : 11).isUndone, at < 12);
  }
  EXPECT_EQ(history.takeFailure(), "");
  test::expectSound(test::kFile);
}

}  // namespace
}  // namespace orv::store::jet
