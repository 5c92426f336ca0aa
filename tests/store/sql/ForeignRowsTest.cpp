// Queries over what other programs have written, in files that are made here.

#include <gtest/gtest.h>

#include "errors/Error.h"
#include "store/Check.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/index/IndexKey.h"
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
    jet::createTable(
        *database_,
        {.name = table,
         .columns = {{.name = "City", .type = ColumnType::text, .size = 40},
                     {.name = "Number", .type = ColumnType::longInteger}},
         .indexes = {{.name = "ByCity", .columns = {{"City", unique}}, .unique = unique}}});
    const auto cities = database_->table(table);
    const std::vector<Value> foreign{"Gro\u00dfr\u00e4schen", 1};
    const jet::RowId row = cities->insert(foreign);
    cities->insert(std::vector<Value>{"Gro\u00dfr\u00e4", 0});
    for (int i = 2; i < 300; ++i) {
      cities->insert(std::vector<Value>{"Town " + std::to_string(i), i});
    }
    {
      const jet::RealIndex& index = cities->definition().realIndexes.front();
      jet::Transaction transaction(cities->pager());
      cities->index(0).erase(jet::makeKey(cities->definition(), index, foreign), row);
      cities->index(0).insert(jet::makeOtherForm(cities->definition(), index, foreign).value(),
                              row);
      transaction.commit();
    }
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

/// A column of bytes is made one of extended dates, since only Access makes these.
TEST_F(ForeignRows, ExtendedDatesAreCompared) {
  const std::string text("0000000000000737424:0000000450611234567:7\0", 42);
  {
    jet::createTable(*database_,
                     {.name = "Events",
                      .columns = {{.name = "ID", .type = ColumnType::longInteger},
                                  {.name = "At", .type = ColumnType::binary, .size = 42}}});
    const auto table = database_->table("Events");
    table->insert(std::vector<Value>{1, Bytes(text.begin(), text.end())});
    table->insert(std::vector<Value>{2, Value()});
    jet::Transaction transaction(database_->pager());
    std::uint8_t* type = database_->pager().modify(table->definition().page) +
                         jet::kJet4.definition.headerSize + jet::kJet4.column.size +
                         jet::kJet4.column.type;
    ASSERT_EQ(*type, static_cast<std::uint8_t>(ColumnType::binary));
    *type = static_cast<std::uint8_t>(ColumnType::extendedDate);
    transaction.commit();
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
