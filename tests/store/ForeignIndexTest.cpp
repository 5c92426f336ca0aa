// Indexes that other programs have made, in files that are made here: keys of another form, sort
// orders that are known in part.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "errors/Error.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "store/Compact.h"
#include "store/Connection.h"
#include "store/FileContent.h"
#include "store/ForeignForms.h"
#include "store/StoreError.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "support/MemoryFiles.h"

namespace orv::store::jet {
namespace {

class ForeignIndex : public testing::Test {
 protected:
  void SetUp() override {
    database_ = createDatabase("foreign.mdb");
    createTable(*database_, test::design("Makers", "ID longInteger, Name text 80, Key guid",
                                         "ByName: Name; Twice: Name-, ID"));
    table_ = database_->table("Makers");
  }

  RowId insert(int id, const std::string& name) {
    return table_->insert(std::vector<Value>{id, name, Value()});
  }
  void update(RowId row, int id, const std::string& name) {
    table_->update(row, std::vector<Value>{id, name, Value()});
  }
  /// Changes a column in the table's definition, and opens the file anew.
  void changeColumn(std::size_t column, std::size_t offset, std::uint16_t number) {
    test::changeColumn(*table_, column, offset, number);
    table_.reset();
    database_.reset();
    database_ = Database::open("foreign.mdb", "");
    table_ = database_->table("Makers");
  }
  CheckReport check() const { return test::expectSound("foreign.mdb"); }
  std::size_t entries(std::size_t index) const {
    return test::contentOf("foreign.mdb").at(fmt::format("Makers index {}", index)).size();
  }

  test::MemoryFiles files_;
  std::shared_ptr<Database> database_;
  std::shared_ptr<Table> table_;
};

TEST_F(ForeignIndex, KeysThatCountExpandedLettersAsOne) {
  std::vector<RowId> rows;
  for (int i = 0; i < 40; ++i) {
    rows.push_back(
        insert(i, i % 2 == 0 ? "Gro\u00dfm\u00e4rkte " + std::to_string(i % 5) : "Groove"));
  }
  for (std::size_t i = 0; i < rows.size(); i += 2) test::countAsOne(*table_, rows[i]);
  const CheckReport before = check();
  EXPECT_EQ(before.remarkCount, 40U);
  ASSERT_FALSE(before.remarks.empty());
  EXPECT_EQ(before.remarks.front().index, "ByName");
  EXPECT_NE(before.remarks.front().what.find("\u00df"), std::string::npos);
  for (std::size_t i = 0; i < 20; i += 2) table_->erase(rows[i]);
  for (std::size_t i = 20; i < 40; i += 2) update(rows[i], 100, "Stra\u00dfe \u00e9");
  EXPECT_EQ(entries(0), 30U);
  const CheckReport after = check();
  EXPECT_EQ(after.remarkCount, 0U) << after.remarks.front().toText();
}

TEST_F(ForeignIndex, BothFormsAreUniqueAndReplaced) {
  createTable(*database_, test::design("Cities", "City text 40", "ByCity unique: City"));
  const auto cities = database_->table("Cities");
  const std::string city = "Gro\u00dfr\u00e4schen";
  const RowId foreign = cities->insert(std::vector<Value>{city});
  test::countAsOne(*cities, foreign);
  EXPECT_THROW(cities->insert(std::vector<Value>{city}), Error);
  // The text may have another key, or the same: that of the entry is neither.
  cities->update(foreign, std::vector<Value>{"Grossr\u00e4schen"});
  EXPECT_EQ(check().remarkCount, 0U);
}

/// A row whose entry is missing goes without it, and the index is right then.
TEST_F(ForeignIndex, RowsWithoutAnEntryCanBeDeleted) {
  const RowId row = insert(1, "a");
  insert(2, "b");
  {
    Transaction transaction(database_->pager());
    table_->index(0).eraseRow(row);
    transaction.commit();
  }
  EXPECT_FALSE(checkFile("foreign.mdb", "").sound());
  EXPECT_FALSE(table_->row({row.page, 200}));
  const RowId other = insert(3, "\u00df");
  {
    Transaction undone(database_->pager());  // an entry whose key is of no form of the row's text
    table_->index(0).eraseRow(other);
    table_->index(0).insert(Bytes{0x7f, 0x4a, 1, 0}, other);
    EXPECT_EQ(checkFile("foreign.mdb", "").faultCount, 2U);
  }
  table_->erase(row);
  check();
}

TEST_F(ForeignIndex, SortOrderKnownInPart) {
  std::vector<RowId> rows;
  for (int i = 0; i < 6; ++i)
    rows.push_back(insert(i, i % 2 == 0 ? "\u6771\u4eac" : "Glass " + std::to_string(i)));
  changeColumn(1, kJet4.column.sortOrder, 1041);
  EXPECT_EQ(check().remarkCount, 2U);  // one for each index, of whose keys some are not compared
  compactFile("foreign.mdb", "", "new.mdb");
  EXPECT_EQ(test::difference(test::contentOf("foreign.mdb"), test::contentOf("new.mdb")), "");
  EXPECT_EQ(test::expectSound("new.mdb").remarkCount, 2U);
  const RowId added = insert(7, "Added");
  EXPECT_EQ(table_->index(0).find(*makeSearchKey(table_->definition().columns[1], "ADDED", true)),
            added);
  for (const auto& change : {std::function<void()>([&] { insert(8, "\u4eac"); }),
                             std::function<void()>([&] { update(added, 7, "\u4eac"); })}) {
    const test::Raised raised = test::raisedBy(change);
    EXPECT_EQ(raised.number, kNotSupported);
    for (const char* named : {"'Makers'", "'ByName'", "\"Name\"", "Japanese", "Access"}) {
      EXPECT_NE(raised.description.find(named), std::string::npos) << raised.description;
    }
  }
  update(rows[1], 1, "Other");
  update(rows[2], 2, "Other");
  table_->update(rows[4], std::vector<Value>{4, "\u6771\u4eac", Guid{{7}}});
  table_->erase(rows[0]);
  table_->erase(rows[3]);
  EXPECT_EQ(entries(0), 5U);
  EXPECT_EQ(entries(1), 5U);
  check();
}

/// A column of GUIDs that the engine makes, as Access has it.
TEST_F(ForeignIndex, AutomaticGuids) {
  const Column& column = table_->definition().columns[2];
  EXPECT_TRUE(table_->row(insert(1, "a"))->isNull(column));
  changeColumn(1, kJet4.column.flags, 0x42);  // which is but for GUIDs
  EXPECT_TRUE(
      table_->row(table_->insert(std::vector<Value>(3)))->isNull(table_->definition().columns[1]));
  changeColumn(2, kJet4.column.flags, 0x43);
  std::set<std::string> made;
  for (int i = 0; i < 50; ++i) {
    made.insert(table_->row(insert(i, "b"))->value(table_->definition().columns[2]).toText());
  }
  EXPECT_EQ(made.size(), 50U);
  std::set<char> digits[2];
  for (const std::string& each : made) {  // {xxxxxxxx-xxxx-4xxx-[89AB]xxx-xxxxxxxxxxxx}: random
    EXPECT_TRUE(each.at(15) == '4' && std::string("89AB").find(each.at(20)) != std::string::npos);
    digits[0].insert(each.at(16));
    digits[1].insert(each.at(21));
  }
  EXPECT_TRUE(digits[0].size() > 8 && digits[1].size() > 8);
  const RowId given = table_->insert(std::vector<Value>{1, "c", Guid{{9}}});
  EXPECT_EQ(table_->row(given)->value(table_->definition().columns[2]), Value(Guid{{9}}));
  const auto records =
      Connection::openFile("foreign.mdb")
          ->openRecordset("Makers", CursorType::keyset, LockType::optimistic, SourceKind::table);
  records->addNew();
  const Value shown = records->value("Key");
  EXPECT_TRUE(made.insert(shown.toText()).second);
  records->setValue("ID", 7);
  records->update();
  EXPECT_EQ(records->value("Key"), shown) << "a row has the GUID from its beginning";
  check();
}

}  // namespace
}  // namespace orv::store::jet
