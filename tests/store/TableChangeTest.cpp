// Rows that a page or a file can lose: none goes in silence, and freed pages take none.

#include <gtest/gtest.h>

#include <map>

#include "errors/Error.h"
#include "store/Check.h"
#include "store/SampleFile.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/catalog/Database.h"
#include "support/MemoryFiles.h"
#include "support/TemporaryFolder.h"

namespace orv::store::jet {
namespace {

using RowsByPlace = std::map<RowId, std::vector<Value>>;

RowsByPlace rowsOf(const Table& table) {
  RowsByPlace rows;
  for (TableScan scan = table.scan(); scan.next();) {
    std::vector<Value>& values = rows[scan.rowId()];
    for (const Column& column : table.definition().columns) {
      values.push_back(scan.row().value(column));
    }
  }
  return rows;
}

/// The page that took the last row is not used any more when it was freed since: by the deletion
/// of its rows, or by undoing what took it.
TEST(FreedPage, TakesNoRows) {
  test::MemoryFiles files;
  const auto database = createDatabase("freed.mdb");
  createTable(*database, {.name = "Notes", .columns = {{"text", ColumnType::text, 255}}});
  const auto table = database->table("Notes");
  const auto insert = [&](const char* text) { return table->insert(std::vector<Value>{text}); };
  table->erase(insert("deleted"));
  insert("kept");
  EXPECT_EQ(rowsOf(*table).size(), 1U);
  {
    Transaction undone(database->pager());
    for (int i = 0; i < 500; ++i)
      insert("a row of a batch that is undone, long enough to fill pages");
  }
  insert("kept too");
  EXPECT_EQ(rowsOf(*table).size(), 2U);
  const CheckReport report = checkFile("freed.mdb", "");
  EXPECT_TRUE(report.sound()) << report.faults.front().toText();
}

/// What is missing at the end of a file is not taken for rows that were never there.
TEST(CutTable, LosesNoRowsInSilence) {
  const orv::test::TemporaryFolder folder;
  test::makeSampleFile(folder / "sample.mdb");
  test::MemoryFiles files;
  files.load(folder / "sample.mdb", "cut.mdb");
  files.open("cut.mdb", FileSystem::Open::existing)->truncate(files.size("cut.mdb") / 8192 * 4096);
  const auto database = Database::open("cut.mdb", "");
  std::size_t damaged = 0;
  for (const CatalogEntry& entry : database->entries()) {
    if (entry.kind != CatalogEntry::Kind::table) continue;
    try {
      const auto table = database->table(entry.name);
      EXPECT_EQ(rowsOf(*table).size(), table->rowCount()) << entry.name;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), kCorruptFile) << error.what();
      ++damaged;
    }
  }
  EXPECT_GT(damaged, 0U);
}

}  // namespace
}  // namespace orv::store::jet
