// Statements that differ in their values only, run by one that is kept.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "errors/Error.h"
#include "store/Connection.h"
#include "store/StoreError.h"
#include "store/sql/SqlEngine.h"
#include "support/TemporaryFolder.h"

namespace orv::store::sql {
namespace {

using testing::ElementsAre;
using testing::Gt;
using testing::IsEmpty;
using testing::Lt;

/// Panes 1 to `count`, of the groups 1 to 3 in turn, each a day after the one before.
class StatementReuse : public testing::Test {
 protected:
  void add(int count) {
    const auto rows = connection_->openRecordset("Pane", CursorType::static_,
                                                 LockType::batchOptimistic, SourceKind::table);
    for (int i = 0; i < count; ++i) {
      ++last_;
      rows->addNew();
      rows->setValue("id", last_);
      rows->setValue("grp", (last_ - 1) % 3 + 1);
      rows->setValue("name", "pane " + std::to_string(last_));
      rows->setValue("made", Date{43830.0 + last_});
    }
    rows->updateBatch();
  }
  std::vector<int> ids(const std::string& condition) {
    return idsOf(*engine_->open("SELECT * FROM Pane WHERE " + condition));
  }
  static std::vector<int> idsOf(SqlCursor& cursor) {
    std::vector<int> ids;
    while (cursor.step()) ids.push_back(cursor.value(0).toLong());
    return ids;
  }
  std::int32_t errorOf(const std::string& condition) {
    try {
      ids(condition);
    } catch (const Error& error) {
      return error.number();
    }
    return 0;
  }
  std::uint64_t rowsVisited(const std::string& condition) {
    const std::uint64_t before = engine_->rowsRead();
    ids(condition);
    return engine_->rowsRead() - before;
  }

  const test::TemporaryFolder folder_;
  const std::shared_ptr<Connection> connection_ =
      Connection::create(folder_ / "panes.mdb", [](Connection& made) {
        made.createTable({.name = "Pane",
                          .columns = {{.name = "id", .type = ColumnType::longInteger},
                                      {.name = "grp", .type = ColumnType::longInteger},
                                      {.name = "name", .size = 20},
                                      {.name = "made", .type = ColumnType::dateTime}}});
      });
  const std::shared_ptr<SqlEngine> engine_ =
      SqlEngine::create(jet::Database::open(folder_ / "panes.mdb", ""));
  int last_ = 0;
};

TEST_F(StatementReuse, GivesTheRowsOfItsOwnValues) {
  add(7);
  EXPECT_THAT(ids("grp = 1 AND id > 1"), ElementsAre(4, 7));
  EXPECT_THAT(ids("grp = 2 AND id > 2"), ElementsAre(5));
  EXPECT_THAT(ids("grp = 2 AND id > 1"), ElementsAre(2, 5));
  EXPECT_THAT(ids("name = 'pane 3'"), ElementsAre(3));
  EXPECT_THAT(ids("name = 'PANE 6' OR id = 003"), ElementsAre(3, 6));
  EXPECT_THAT(ids("name = '3'"), IsEmpty());
  EXPECT_THAT(ids("id < 4 ORDER BY 2 DESC"), ElementsAre(3, 2, 1));
  EXPECT_THAT(ids("id < 4 ORDER BY 1"), ElementsAre(1, 2, 3));
  EXPECT_THAT(ids("id < 4.5 AND id >= 3"), ElementsAre(3, 4));
  // Two that run at the same time.
  const auto first = engine_->open("SELECT * FROM Pane WHERE grp = 1");
  ASSERT_TRUE(first->step());
  EXPECT_THAT(ids("grp = 3"), ElementsAre(3, 6));
  EXPECT_THAT(idsOf(*first), ElementsAre(4, 7));
}

TEST_F(StatementReuse, LetsExpressionsThatStandTwiceBeAlike) {
  add(6);
  const auto grouped =
      engine_->open("SELECT grp = 2 AS f, Count(*) FROM Pane GROUP BY grp = 2 ORDER BY 2");
  ASSERT_TRUE(grouped->step());
  EXPECT_EQ(grouped->value(1).toLong(), 2);
  const auto top = engine_->open("SELECT DISTINCT TOP 3 id > 5 AS f FROM Pane ORDER BY id > 5");
  EXPECT_TRUE(top->step());
}

TEST_F(StatementReuse, ReadsTextThatStandsForADateOrANumberAnew) {
  add(5);
  EXPECT_THAT(ids("made = '1/3/2020'"), ElementsAre(3));
  EXPECT_THAT(ids("made = '1/4/2020'"), ElementsAre(4));
  EXPECT_EQ(errorOf("made = 'yesterday'"), kTypeMismatch);
  EXPECT_THAT(ids("id = '2'"), ElementsAre(2));
  EXPECT_EQ(errorOf("id = 'two'"), kTypeMismatch);
  EXPECT_THAT(ids("id = '5'"), ElementsAre(5));
}

TEST_F(StatementReuse, IsPlannedAnewForATableThatHasGrownOrGotAnIndex) {
  add(3);
  EXPECT_THAT(ids("id = 2"), ElementsAre(2));
  add(297);
  EXPECT_THAT(rowsVisited("id = 250"), Gt(100u));  // the first of two makes no lookup yet
  EXPECT_THAT(rowsVisited("id = 251"), Lt(5u));
  connection_->createIndex("Pane", {.name = "byGroup", .columns = {{"grp"}, {"id"}}});
  EXPECT_THAT(rowsVisited("grp = 2 AND id = 251"), Lt(5u));
  EXPECT_THAT(ids("grp = 2 AND id = 251"), ElementsAre(251));
  EXPECT_EQ(errorOf("grp = 1 AND nothing = 1"), kItemNotFound);
}

}  // namespace
}  // namespace orv::store::sql
