#include "database/DatabaseErrors.h"
#include "database/SourceDatabases.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using PaneRetrievalTest = DatabaseTest;

TEST_F(PaneRetrievalTest, LooksUpByKeyElseByNameAndGroup) {
  database.InsertPane(*makePane("a"), *dc);
  const auto other = makePane("a");
  other->group("Other");
  database.InsertPane(*other, *dc);
  const auto find = [&](std::int32_t id, const char* name, const char* group) {
    const auto pane = database.RetrievePaneORV_30(*dc, id, name, group, 0, 0);
    return pane ? pane->id() : 0;
  };
  EXPECT_EQ(find(2, "ignored", "ignored"), 2);
  EXPECT_EQ(find(0, "A", ""), 1) << "names compare without regard to case";
  EXPECT_EQ(find(0, "a", "Other"), 2);
  EXPECT_EQ(find(0, "a", "no such group"), 0);
  EXPECT_EQ(find(9, "", ""), 0);
  EXPECT_EQ(raisedBy([&] { find(0, "", "Demo"); }).number, database::kRetrievalFailed);
  EXPECT_NE(raisedBy([&] { find(0, "it's", ""); }).number, 0);
}

TEST_F(PaneRetrievalTest, DirectionZeroMeansAny) {
  database.InsertPane(*makePane("pane"), *dc);
  addRow(*dc, "Pane_spectral_data",
         {{"PaneID", 1}, {"angle", 0}, {"direction", 2}, {"wavelength", 350.0}});
  EXPECT_EQ(retrieve(1, 0, 0)->SpectralData()->count(), 6);
  EXPECT_EQ(retrieve(1, 0, 0)->SpectralData()->wl(1), 350);
  EXPECT_EQ(retrieve(1, 0, 2)->SpectralData()->count(), 1);
  EXPECT_EQ(retrieve(1, 0, 3)->SpectralData(), nullptr);
}

TEST_F(PaneRetrievalTest, ADanglingSupplierIsEmpty) {
  addRow(*dc, "Pane", {{"name", "pane"}, {"supplierID", 77}});
  EXPECT_EQ(retrieve(1)->supplier(), "");
}

TEST_F(PaneRetrievalTest, AnglesComeInTableOrder) {
  for (const std::int16_t angle : {60, 0, 30}) database.InsertPane(*makePane("a", angle), *dc);
  EXPECT_EQ(database.RetrieveAnglesOfPaneDataORV_30(1, *dc),
            (std::vector<std::int16_t>{60, 0, 30}));
  EXPECT_TRUE(database.RetrieveAnglesOfPaneDataORV_30(2, *dc).empty());
}

TEST_F(PaneRetrievalTest, TheIgdbGivesKindsSubstratesAndOneValueForBothSides) {
  const auto igdb = makeGlazingDatabase(folder / "igdb.mdb");
  std::string told;
  for (const char* name : {"clear.DAT", "coated.dat", "film.dat", "stack.dat"}) {
    told += whole(*database.RetrievePaneIGDB(*igdb, name)) + "\n";
  }
  EXPECT_EQ(told, readFile(ORV_SOURCE_DIR "/tests/database/glazings.txt"));
  EXPECT_EQ(database.RetrievePaneIGDB(*igdb, "not there"), nullptr);
}

}  // namespace
}  // namespace orv::test
