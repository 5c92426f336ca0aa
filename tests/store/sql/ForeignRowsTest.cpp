// Queries over what other programs have written, in files that are made here.

#include <gtest/gtest.h>

#include "errors/Error.h"
#include "store/Check.h"
#include "store/jet/Creation.h"
#include "store/jet/Database.h"
#include "store/jet/IndexKey.h"
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
    while (cursor->step()) {
      found += (found.empty() ? "" : ", ") + cursor->value(0).toText();
    }
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

}  // namespace
}  // namespace orv::store::sql
