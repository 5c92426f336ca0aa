// Changes to files that other programs made: they stay whole, and what was in them stays.

#include <gtest/gtest.h>

#include <map>

#include "store/Check.h"
#include "store/jet/catalog/Database.h"
#include "support/Corpus.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

class ForeignFiles : public testing::Test {
 protected:
  void SetUp() override { ORV_NEEDS_CORPUS(); }

  std::shared_ptr<Table> open(const char* file, const char* table) {
    files_.load(test::corpusFolder() / "foreign" / file, test::kFile);
    expectSound();
    return Database::open(test::kFile, "")->table(table);
  }
  static void expectSound() {
    for (const CheckFinding& fault : checkFile(test::kFile, "").faults) {
      ADD_FAILURE() << fault.toText();
    }
  }
  /// The rows by the value of their first column.
  static std::map<std::string, std::vector<Value>> rowsOf(const Table& table) {
    std::map<std::string, std::vector<Value>> rows;
    for (TableScan scan = table.scan(); scan.next();) {
      std::vector<Value> values;
      for (const Column& column : table.definition().columns) {
        values.push_back(scan.row().value(column));
      }
      rows.emplace(values.front().toText(), values);
    }
    return rows;
  }

  test::MemoryFiles files_;
};

TEST_F(ForeignFiles, APageThatTheMapOfFreePagesHasNoPointerForIsNotTaken) {
  const auto table = open("testRefGlobalV2000.mdb", "Table1");
  const std::size_t rowsBefore = rowsOf(*table).size();
  for (int i = 0; i < 60; ++i) {
    table->insert(std::vector<Value>{std::to_string(i) + std::string(40, 'A'), "text", i, i, i,
                                     i / 8.0, Date{i + 0.5}, Currency{i}, i % 2 == 0});
  }
  expectSound();
  EXPECT_EQ(Database::open(test::kFile, "")->table("Table1")->countRows(), rowsBefore + 60);
}

TEST_F(ForeignFiles, RowsOfBeforeTheFirstTextColumnAreReadAndChanged) {
  const auto table = open("columnAddedLater.mdb", "NumbersThenText");
  auto rows = rowsOf(*table);
  ASSERT_EQ(rows.size(), 100U);
  EXPECT_EQ(rows.at("7"), (std::vector<Value>{7, false, 0.875, Value(), Value()}));
  EXPECT_EQ(rows.at("149"), (std::vector<Value>{149, false, 6.125, "t49", "note 49"}));
  std::vector<RowId> places;
  for (TableScan scan = table->scan(); scan.next();) {
    places.push_back(scan.rowId());
  }
  for (std::size_t i = 0; i < places.size(); ++i) {
    const std::string key = table->row(places[i])->value(table->definition().columns[0]).toText();
    if (i % 3 == 0) {
      table->erase(places[i]);
      rows.erase(key);
    } else if (i % 3 == 1) {
      rows.at(key)[3] = "changed";
      rows.at(key)[4] = std::string(3000, 'n');
      table->update(places[i], rows.at(key));
    }
  }
  expectSound();
  EXPECT_EQ(rowsOf(*Database::open(test::kFile, "")->table("NumbersThenText")), rows);
}

}  // namespace
}  // namespace orv::store::jet
