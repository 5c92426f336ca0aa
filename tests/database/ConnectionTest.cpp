#include "database/DatabaseErrors.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Database.h"

namespace orv::test {
namespace {

using ConnectionTest = DatabaseTest;

TEST_F(ConnectionTest, TheLastRowOfTheVersionTableCountsAndOneThereHasToBe) {
  EXPECT_EQ(database.LookupDatabaseVersion(*dc), "3.0.0");
  addRow(*dc, "ORVdata_version", {{"version", "9.9.9 "}});
  EXPECT_EQ(database.LookupDatabaseVersion(*dc), "9.9.9 ") << "neither trimmed nor changed";
  addRow(*dc, "ORVdata_version", {{"version", store::Value()}});
  EXPECT_EQ(raisedBy([&] { database.LookupDatabaseVersion(*dc); }).number, kInvalidUseOfNull);
  dc->deleteRows("ORVdata_version", "version > '' OR version IS NULL");
  const Raised raised = raisedBy([&] { database.LookupDatabaseVersion(*dc); });
  EXPECT_EQ(raised.number, 1005);
  EXPECT_EQ(raised.description, "The database's version info has no entries!");
}

TEST_F(ConnectionTest, OpensAndClosesAndRefusesWhatIsNoDatabase) {
  const auto second = database.OpenDatabase(path, "");
  EXPECT_EQ(database.LookupDatabaseVersion(*second), "3.0.0");
  database.CloseDatabase(*second);
  EXPECT_FALSE(second->isOpen());
  EXPECT_EQ(raisedBy([&] { database.CloseDatabase(*second); }).number, store::kObjectClosed);

  EXPECT_NE(raisedBy([&] { database.OpenDatabase(path + ".not", ""); }).number, 0);
  folder.write("text.mdb", "no database");
  EXPECT_NE(raisedBy([&] { database.OpenDatabase(folder / "text.mdb", ""); }).number, 0);
}

// A count of rows in a file is a hint: other programs do not always keep it.
TEST_F(ConnectionTest, ARecordSetHasTheRowsOfItsTableWhateverTheTableSays) {
  addRow(*dc, "ORVdata_version", {{"version", "last"}});
  const auto say = [&](std::uint32_t count) {
    store::jet::Pager& pager = dc->database().pager();
    store::jet::Transaction transaction(pager);
    store::jet::store32(pager.modify(dc->database().table("ORVdata_version")->definition().page) +
                            pager.format().definition.rowCount,
                        count);
    transaction.commit();
  };
  const auto open = [&] {
    return dc->openRecordset("ORVdata_version", store::CursorType::static_);
  };
  for (const std::uint32_t count : {0xffffffffU, 0U}) {
    say(count);
    EXPECT_EQ(open()->recordCount(), 2);
    const auto rows = open();
    rows->moveLast();
    EXPECT_EQ(rows->position(), 1);
    EXPECT_EQ(rows->value(0).toText(), "last");
    rows->moveNext();
    EXPECT_TRUE(rows->eof() && !rows->bof());
    EXPECT_EQ(rows->position(), 2);
    rows->movePrevious();
    EXPECT_EQ(rows->value(0).toText(), "last");
  }
}

TEST_F(ConnectionTest, ASemicolonInAPathBreaksTheConnectionString) {
  const auto odd = folder / "a;b.mdb";
  database::CreateEmptyDatabase(odd);
  EXPECT_NE(raisedBy([&] { database.OpenDatabase(odd, ""); }).number, 0);
}

TEST(DatabaseErrorsTest, EachNumberHasItsTextAndTheProductAsItsSource) {
  const std::vector<std::pair<std::int32_t, std::string>> texts = {
      {-2147220991, "Data retrieval failed."},
      {-2147220990, "Unable to retrieve this data from this database."},
      {-2147220989, "Unable to write this data from this database."},
      {-2147220988, "This record already exists."},
      {-2147220987, "The spectral data of this pane is invalid. The values may be unphysical."},
      {-2147220986,
       "The spectral data of the subtrate of this pane is invalid. The values may be unphysical."},
      {-2147220985, "Data for this pane and its substrate are not given at identical wavelengths."},
      {17, "An unhandled error occured in ORV database manager."}};
  for (const auto& [number, text] : texts) {
    EXPECT_EQ(database::ErrorDescription(number), text);
    const Raised raised = raisedBy([&] { database::RaiseUnless(false, number); });
    EXPECT_EQ(raised.number, number);
    EXPECT_EQ(raised.source, "ORV database manager");
  }
  EXPECT_NO_THROW(database::RaiseUnless(true, 17));
}

}  // namespace
}  // namespace orv::test
