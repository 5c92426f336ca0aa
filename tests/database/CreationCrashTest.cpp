// Whatever fails while a new database is made: there is the whole database, or none.
#include <gtest/gtest.h>

#include <cstdlib>

#include "database/OrvSchema.h"
#include "errors/Error.h"
#include "store/Check.h"
#include "store/StoreError.h"
#include "support/MemoryFiles.h"

namespace orv::database {
namespace {

class CreationCrash : public testing::Test {
 protected:
  /// Makes the database; whether that succeeded.
  static bool make() {
    try {
      CreateEmptyDatabase(test::kFile);
      return true;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), store::kStoreFailure) << error.what();
      return false;
    }
  }

  void expectWholeOrAbsent(bool made, const std::string& when) {
    if (files_.size(test::kFile) < 0) {
      EXPECT_FALSE(made) << when << ": the database that was made is gone";
      EXPECT_TRUE(make()) << when << ": what was left stands in the way of another try";
    }
    const auto connection = store::Connection::openFile(test::kFile);
    EXPECT_EQ(connection->tableNames().size(), orvTables().size()) << when;
    EXPECT_EQ(connection->queryNames().size(), orvQueries().size()) << when;
    EXPECT_EQ(connection->table("ORVdata_version").rowCount, 1) << when;
    EXPECT_TRUE(store::checkFile(test::kFile, "").sound()) << when;
  }

  test::MemoryFiles files_;
};

TEST_F(CreationCrash, EveryLossOfPowerLeavesAWholeDatabaseOrNone) {
  std::size_t call = 0;
  for (bool made = false; !made; ++call) {
    for (unsigned seed = 0; seed < 8; ++seed) {
      files_.remove(test::kFile);
      files_.syncFolder(test::kFile);
      files_.losePowerAt(call);
      made = make();
      files_.restart(seed);
      expectWholeOrAbsent(made, "power lost at call " + std::to_string(call));
    }
  }
  EXPECT_GT(call, 5U);
}

TEST_F(CreationCrash, EveryFailureLeavesNothingBehind) {
  std::size_t call = 0;
  for (bool made = false; !made; ++call) {
    files_.remove(test::kFile);
    files_.failAt(call);
    made = make();
    files_.failAt(0, 0);
    if (!made) {
      EXPECT_LT(files_.size(test::kFile), 0) << "call " << call;
      EXPECT_LT(files_.size(std::string(test::kFile) + "-new"), 0) << "call " << call;
    }
    expectWholeOrAbsent(made, "call " + std::to_string(call) + " failed");
  }
  files_.remove(test::kFile);
  files_.limitSpace(100000);
  EXPECT_FALSE(make());
  EXPECT_LT(files_.size(test::kFile), 0);
}

/// A log that a crash left beside a database that has been removed since is not of the new one.
TEST_F(CreationCrash, AnOldLogIsNotAppliedToANewDatabase) {
  ASSERT_TRUE(make());
  files_.copy(test::kFile, "old.mdb");
  {
    const auto old = store::Connection::openFile("old.mdb");
    files_.losePowerAt(4);
    EXPECT_THROW(old->createTable({.name = "more", .columns = {{.name = "a"}}}), Error);
  }
  files_.restart(1);
  ASSERT_GT(files_.size("old.mdb-log"), 0);
  files_.remove("old.mdb");
  const auto connection = store::Connection::create("old.mdb");
  EXPECT_TRUE(connection->tableNames().empty());
  EXPECT_TRUE(store::checkFile("old.mdb", "").sound());
}

}  // namespace
}  // namespace orv::database
