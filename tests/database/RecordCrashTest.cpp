// Whatever fails while a record is written or deleted: it is there entirely, or not at all.
#include <gtest/gtest.h>

#include <functional>

#include "database/TestDatabase.h"
#include "store/Check.h"
#include "store/StoreError.h"
#include "support/MemoryFiles.h"

namespace orv::test {
namespace {

using Interface = database::ORV_DatabaseInterface;
using Change = std::function<void(Interface&, store::Connection&)>;

void insertPane(Interface& database, store::Connection& dc) {
  const auto pane = makePane("new", 60);
  pane->supplier("New maker");
  pane->group("New group");
  pane->description(std::string(3000, 'd'));
  database.InsertPane(*pane, dc);
}

void insertAngle(Interface& database, store::Connection& dc) {
  database.InsertPane(*makePane("there", 30), dc);
}

void insertFrame(Interface& database, store::Connection& dc) {
  FrameDataClass frame;
  frame.name("frame");
  frame.supplier("Frame maker");
  frame.group("Frames");
  frame.frametype("Wood");
  frame.picture(store::Bytes(9000, 0x5A));
  database.InsertFrame(frame, dc);
}

void insertShading(Interface& database, store::Connection& dc) {
  ShadingDataClass shading;
  shading.name("shading");
  shading.supplier("Shade maker");
  shading.group("Shades");
  shading.integrated(std::vector<ShadingIntegratedData>(3));
  shading.spectrum(std::vector<ShadingSpectralPoint>(40));
  database.InsertShading(shading, dc);
}

void deletePane(Interface& database, store::Connection& dc) {
  database.DeleteGlazing(1, dc);
}

class RecordCrash : public testing::Test {
 protected:
  RecordCrash() {
    const auto dc = database::CreateEmptyDatabase(test::kFile);
    database_.InsertPane(*makePane("there"), *dc);
    insertShading(database_, *dc);
    before_ = rowCounts(*dc);
  }

  static std::vector<std::int64_t> rowCounts(store::Connection& dc) {
    std::vector<std::int64_t> counts;
    for (const std::string& table : dc.tableNames()) counts.push_back(dc.table(table).rowCount);
    return counts;
  }

  std::vector<std::int64_t> rowCountsAfter(const Change& change) {
    files_.copy(test::kFile, "after.mdb");
    const auto dc = store::Connection::openFile("after.mdb");
    change(database_, *dc);
    return rowCounts(*dc);
  }

  /// Whether the change was told to be made.
  bool make(const Change& change, store::Connection& dc) {
    try {
      change(database_, dc);
      return true;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), store::kStoreFailure) << error.what();
      return false;
    }
  }

  /// Makes the change while `trouble` begins at one call after the other, until none is left.
  void tryEverywhere(const Change& change, const std::function<void(std::size_t)>& trouble,
                     const std::function<void()>& relief) {
    const auto after = rowCountsAfter(change);
    ASSERT_NE(after, before_);
    std::size_t call = 0;
    for (bool made = false; !made; ++call) {
      files_.copy(test::kFile, "try.mdb");
      {
        const auto dc = store::Connection::openFile("try.mdb");
        trouble(call);
        made = make(change, *dc);
      }
      relief();
      const auto dc = store::Connection::openFile("try.mdb");
      const auto found = rowCounts(*dc);
      EXPECT_TRUE(found == after || (!made && found == before_)) << "call " << call;
      EXPECT_TRUE(store::checkFile("try.mdb", "").sound()) << "call " << call;
      if (found == before_) {
        EXPECT_TRUE(make(change, *dc)) << "the same cannot be done later, call " << call;
      }
    }
    EXPECT_GT(call, 2U);
  }

  MemoryFiles files_;
  ScriptedQuestions questions_;
  Interface database_{questions_};
  std::vector<std::int64_t> before_;
};

const std::vector<std::pair<const char*, Change>> kChanges = {{"a pane", insertPane},
                                                              {"an angle", insertAngle},
                                                              {"a frame", insertFrame},
                                                              {"a shading", insertShading},
                                                              {"a deletion", deletePane}};

TEST_F(RecordCrash, EveryLossOfPowerLeavesTheRecordWholeOrAbsent) {
  for (const auto& [name, change] : kChanges) {
    SCOPED_TRACE(name);
    tryEverywhere(
        change, [&](std::size_t call) { files_.losePowerAt(call); }, [&] { files_.restart(7); });
  }
}

TEST_F(RecordCrash, EveryFailureOfTheDiskLeavesTheRecordWholeOrAbsent) {
  for (const auto& [name, change] : kChanges) {
    SCOPED_TRACE(name);
    tryEverywhere(
        change, [&](std::size_t call) { files_.failAt(call); }, [&] { files_.failAt(0, 0); });
  }
}

}  // namespace
}  // namespace orv::test
