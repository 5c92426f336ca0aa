// Whatever fails while a record is written or deleted, or a database made: it is there entirely, or
// not at all.

#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "store/Check.h"
#include "store/StoreError.h"
#include "support/MemoryFiles.h"

namespace orv::test {
namespace {

using Interface = database::ORV_DatabaseInterface;
using Change = std::function<void(Interface&, store::Connection&)>;

const std::vector<std::pair<const char*, Change>> kChanges = {
    {"a pane",
     [](Interface& database, store::Connection& dc) {
       const auto pane = makePane("new", 60);
       pane->supplier("New maker");
       pane->group("New group");
       pane->description(std::string(3000, 'd'));
       database.InsertPane(*pane, dc);
     }},
    {"an angle", [](auto& database, auto& dc) { database.InsertPane(*makePane("there", 30), dc); }},
    {"a frame",
     [](Interface& database, store::Connection& dc) {
       FrameDataClass frame = fullFrame();
       frame.picture(store::Bytes(9000, 0x5A));
       database.InsertFrame(frame, dc);
     }},
    {"a shading",
     [](Interface& database, store::Connection& dc) {
       ShadingDataClass shading = fullShading();
       database.InsertShading(shading, dc);
     }},
    {"a deletion", [](auto& database, auto& dc) { database.DeleteGlazing(1, dc); }}};

class RecordCrash : public testing::TestWithParam<bool> {
 protected:
  RecordCrash() {
    const auto dc = database::CreateEmptyDatabase(kFile);
    database_.InsertPane(*makePane("there"), *dc);
    before_ = rowCounts(*dc);
  }

  static std::vector<std::int64_t> rowCounts(store::Connection& dc) {
    std::vector<std::int64_t> counts;
    for (const std::string& table : dc.tableNames()) counts.push_back(dc.table(table).rowCount);
    return counts;
  }

  /// Whether the work was told to be done; trouble begins at a call of it, and is over then. Where
  /// it was, the power may go.
  bool isDoneWithTrouble(std::size_t call, const std::function<void()>& work) {
    GetParam() ? files_.losePowerAt(call) : files_.failAt(call);
    const bool isDone = succeeds(work);
    GetParam() ? files_.restart(static_cast<unsigned>(call)) : files_.failAt(0, 0);
    return isDone;
  }
  static bool succeeds(const std::function<void()>& work) {
    const Raised raised = raisedBy(work);
    EXPECT_TRUE(raised.number == 0 || raised.number == store::kStoreFailure) << raised.description;
    return raised.number == 0;
  }

  MemoryFiles files_;
  ScriptedQuestions questions_;
  Interface database_{questions_};
  std::vector<std::int64_t> before_;
};

TEST_P(RecordCrash, LeavesTheRecordWholeOrAbsent) {
  for (const auto& [name, change] : kChanges) {
    const std::string afterwards = std::string(name) + ".mdb";
    files_.copy(kFile, afterwards);
    const auto changed = store::Connection::openFile(afterwards);
    change(database_, *changed);
    const auto after = rowCounts(*changed);
    ASSERT_NE(after, before_) << name;
    std::size_t call = 0;
    for (bool made = false; !made; ++call) {
      SCOPED_TRACE(std::string(name) + ", call " + std::to_string(call));
      files_.copy(kFile, "try.mdb");
      {
        const auto dc = store::Connection::openFile("try.mdb");
        made = isDoneWithTrouble(call, [&, &make = change] { make(database_, *dc); });
      }
      files_.restart(static_cast<unsigned>(call));
      const auto dc = store::Connection::openFile("try.mdb");
      const auto found = rowCounts(*dc);
      EXPECT_TRUE(found == after || (!made && found == before_));
      EXPECT_TRUE(store::checkFile("try.mdb", "").sound());
      if (found == before_) {
        EXPECT_TRUE(succeeds([&, &make = change] { make(database_, *dc); }))
            << "it can be done later";
      }
    }
    EXPECT_GT(call, 2U);
  }
}

TEST_P(RecordCrash, LeavesANewDatabaseWholeOrAbsent) {
  constexpr const char* kNew = "new.mdb";
  std::size_t call = 0;
  for (bool made = false; !made; ++call) {
    SCOPED_TRACE("call " + std::to_string(call));
    files_.remove(kNew);
    files_.syncFolder(kNew);
    made = isDoneWithTrouble(call, [] { database::CreateEmptyDatabase(kNew); });
    files_.restart(static_cast<unsigned>(call));
    if (files_.size(kNew) < 0) {
      EXPECT_FALSE(made) << "the database that was made is gone";
      EXPECT_TRUE(GetParam() || files_.size(std::string(kNew) + "-new") < 0);
      EXPECT_TRUE(succeeds([] { database::CreateEmptyDatabase(kNew); })) << "it can be done later";
    }
    const auto connection = store::Connection::openFile(kNew);
    EXPECT_EQ(connection->tableNames().size(), 11U);
    EXPECT_EQ(connection->queryNames().size(), 3U);
    EXPECT_EQ(connection->table("ORVdata_version").rowCount, 1);
    EXPECT_TRUE(store::checkFile(kNew, "").sound());
  }
  EXPECT_GT(call, 5U);
}

INSTANTIATE_TEST_SUITE_P(, RecordCrash, testing::Bool(), [](const auto& info) {
  return info.param ? "ByALossOfPower" : "ByAFailingCall";
});

}  // namespace
}  // namespace orv::test
