// Queries over what other programs have written, in files that are made here.

#include <gtest/gtest.h>

#include <set>

#include "errors/Error.h"
#include "store/Check.h"
#include "store/ForeignForms.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "store/sql/SqlEngine.h"
#include "support/MemoryFiles.h"

namespace orv::store::sql {
namespace {

class ForeignRows : public testing::Test {
 protected:
  /// The values of the first column, parted by blanks.
  std::string select(const std::string& sql) {
    const auto cursor = SqlEngine::create(database_)->open(sql);
    std::string found;
    while (cursor->step()) found += (found.empty() ? "" : ", ") + cursor->value(0).toText();
    return found;
  }

  test::MemoryFiles files_;
  std::shared_ptr<jet::Database> database_ = jet::createDatabase("rows.mdb");
};

/// Keys that count letters that expand as one are found by the values that they are keys of.
TEST_F(ForeignRows, AreFoundUnderBothFormsOfTheirKeys) {
  for (const bool unique : {false, true}) {
    const std::string table = unique ? "Unique" : "Plain";
    jet::createTable(*database_, test::design(table, "City text 40, Number longInteger",
                                              unique ? "ByCity unique: City" : "ByCity: City-"));
    const auto cities = database_->table(table);
    const jet::RowId row = cities->insert(std::vector<Value>{"Gro\u00dfr\u00e4schen", 1});
    cities->insert(std::vector<Value>{"Gro\u00dfr\u00e4", 0});
    for (int i = 2; i < 300; ++i) {
      cities->insert(std::vector<Value>{"Town " + std::to_string(i), i});
    }
    test::countAsOne(*cities, row);
    const auto numbers = [&](const std::string& where) {
      return select("SELECT Number FROM [" + table + "] WHERE " + where);
    };
    EXPECT_EQ(numbers("City = 'gro\u00dfR\u00e4schen'"), "1") << table;
    EXPECT_EQ(numbers("City >= 'Gro\u00dfr\u00e4schen' AND City < 'h'"), "1") << table;
    EXPECT_EQ(numbers("City <= 'Gro\u00dfr\u00e4schen' AND City > 'Gro\u00dfr\u00e4'"), "1")
        << table;
    EXPECT_EQ(numbers("City = 'Gro\u00dfr\u00e4'"), "0") << table;
  }
}

/// An index in another sort order than that of the database, and one whose keys are not known.
TEST_F(ForeignRows, OfAnotherSortOrderAreFoundInTheTable) {
  for (const std::uint16_t language : {1045, 1036}) {
    const std::string name = "Names" + std::to_string(language);
    jet::createTable(*database_, test::design(name, "n text 20", "ByName: n"));
    const auto table = database_->table(name);
    for (const char* text : {"b", "\u00e9", "A", "c"}) table->insert(std::vector<Value>{text});
    test::changeColumn(*table, 0, jet::kJet4.column.sortOrder, language);
  }
  database_.reset();
  database_ = jet::Database::open("rows.mdb", "");
  for (const char* name : {"Names1045", "Names1036"}) {
    const std::string from = std::string("SELECT n FROM ") + name;
    EXPECT_EQ(select(from + " WHERE n = 'a'"), "A");
    EXPECT_EQ(select(from + " WHERE n > 'b' ORDER BY n"), "c, \u00e9");
    EXPECT_EQ(select(from + " ORDER BY n DESC"), "\u00e9, c, b, A");
  }
}

/// A leaf in the middle is damaged: rows behind it are found in the table, in the order of the
/// index.
TEST_F(ForeignRows, OfADamagedIndexAreFoundInTheTable) {
  jet::createTable(*database_, test::design("Numbers", "n longInteger", "ByNumber ignoreNulls: n"));
  {
    const auto table = database_->table("Numbers");
    jet::Transaction transaction(database_->pager());
    for (int i = 0; i < 2000; ++i) table->insert(std::vector<Value>{i * 1999 % 2003});
    for (int i = 0; i < 5; ++i) table->insert(std::vector<Value>{Value()});
    const jet::RealIndex& index = table->definition().realIndexes.front();
    const jet::PageNumber leaf =
        jet::StoredIndexPage(database_->pager(), index.root, table->definition().page)
            .entries.child(1);
    database_->pager().modify(leaf)[0] = 9;
    transaction.commit();
  }
  std::set<int> numbers;
  for (int i = 0; i < 2000; ++i) numbers.insert(i * 1999 % 2003);
  std::string up, down;
  for (auto n = numbers.find(6); n != numbers.find(1990); ++n) {
    up += (up.empty() ? "" : ", ") + std::to_string(*n);
    down = std::to_string(*n) + (down.empty() ? "" : ", ") + down;
  }
  for (const auto& [order, expected] : {std::pair("n", &up), std::pair("n DESC", &down)}) {
    database_.reset();
    database_ = jet::Database::open("rows.mdb", "");
    const std::string where = " FROM Numbers WHERE n >= 6 AND n < 1990";
    for (int i = 0; i < 2; ++i) {  // at first from the index, then without it
      EXPECT_EQ(select("SELECT n" + where + " ORDER BY " + order), *expected);
      EXPECT_EQ(database_->tablesWithoutIndex(), std::vector<std::string>{"Numbers"});
    }
    EXPECT_EQ(select("SELECT n FROM Numbers WHERE n = 1000"), "1000");
  }
}

/// A column of bytes is made one of extended dates, since only Access makes these.
TEST_F(ForeignRows, ExtendedDatesAreCompared) {
  const std::string text("0000000000000737424:0000000450611234567:7\0", 42);
  {
    jet::createTable(*database_, test::design("Events", "ID longInteger, At binary 42"));
    const auto table = database_->table("Events");
    table->insert(std::vector<Value>{1, Bytes(text.begin(), text.end())});
    table->insert(std::vector<Value>{2, Value()});
    test::changeColumn(*table, 1, jet::kJet4.column.type,
                       static_cast<std::uint8_t>(ColumnType::extendedDate));
  }
  database_.reset();
  database_ = jet::Database::open("rows.mdb", "");
  EXPECT_EQ(select("SELECT At FROM Events WHERE At > #2020-01-01# AND At < #2020-01-02#"),
            "2020-01-01 12:31:01");
  EXPECT_THROW(database_->table("Events")->insert(std::vector<Value>{3, Date{1}}), Error);
  EXPECT_TRUE(checkFile("rows.mdb", "").sound());
}

}  // namespace
}  // namespace orv::store::sql
