#include "database/DatabaseErrors.h"
#include "database/SourceDatabases.h"
#include "database/TestDatabase.h"
#include "model/Raised.h"
#include "support/FullRecords.h"

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
  addRow("Pane_spectral_data",
         {{"PaneID", 1}, {"angle", 0}, {"direction", 2}, {"wavelength", 350.0}});
  EXPECT_EQ(retrieve(1, 0, 0)->SpectralData()->count(), 6);
  EXPECT_EQ(retrieve(1, 0, 0)->SpectralData()->wl(1), 350);
  EXPECT_EQ(retrieve(1, 0, 2)->SpectralData()->count(), 1);
  EXPECT_EQ(retrieve(1, 0, 3)->SpectralData(), nullptr);
}

TEST_F(PaneRetrievalTest, ADanglingSupplierIsEmpty) {
  addRow("Pane", {{"name", "pane"}, {"supplierID", 77}});
  EXPECT_EQ(retrieve(1)->supplier(), "");
}

TEST_F(PaneRetrievalTest, AnglesComeInTableOrder) {
  for (const std::int16_t angle : {60, 0, 30}) database.InsertPane(*makePane("a", angle), *dc);
  EXPECT_EQ(database.RetrieveAnglesOfPaneDataORV_30(1, *dc),
            (std::vector<std::int16_t>{60, 0, 30}));
  EXPECT_TRUE(database.RetrieveAnglesOfPaneDataORV_30(2, *dc).empty());
}

TEST_F(PaneRetrievalTest, TheIgdbGivesKindsSubstratesAndOneValueForBothSides) {
  const auto igdb = makeGlazingDatabase((folder.path() / "igdb.mdb").string());
  const auto told = [&](const char* name) {
    std::string text = whole(*database.RetrievePaneIGDB(*igdb, name));
    std::replace(text.begin(), text.end(), '\n', '|');
    return text;
  };
  EXPECT_EQ(
      told("clear.DAT"),
      R"(CLEAR.DAT|none|0|Clear ®|Maker 3|IGDB|Monolithic Appearance: ||#|0|none|false|3|0|0|4.5|1.25|0.125|0.125|-1|0|-1|0|1|||-1|0|||||||none|0.3 0.3 0.1 0.2|0.6 0.6 0.4 0.5|0 0 0|0 0 0|0 0 0|0 0.7 0.7 0 0 0|0.75|0.8399999737739563||0|1|falsefalsefalsetruetruefalsefalse|unit 0; 0.3 0.105 0.105 0.0675 0.04875; 0.5 0.155 0.155 0.0925 0.06125; 2.5 0.655 0.655 0.3425 0.18625)");
  EXPECT_EQ(
      told("coated.dat"),
      R"(COATED.DAT|none|0|||IGDB|Coated Appearance: |||0|none|false|4|0|0|0|0|0|0|-1|0|-1|0|3|||-1|0||clear.dat|||||none|0 0 0 0|0 0 0 0|0 0 0|0 0 0|0 0 0|0 0 0 0 0 0|0|0||0|1|falsetruefalsefalsetruefalsetrue|unit 0; 0.3 0.115 0.115 0.0775 0.05875; 0.5 0.165 0.165 0.1025 0.07125; 2.5 0.665 0.665 0.3525 0.19625|substrate:||none|0|||||||0|none|false|3|0|0|0|0|0|0|-1|0|-1|0|0|||-1|0|||||||none|0 0 0 0|0 0 0 0|0 0 0|0 0 0|0 0 0|0 0 0 0 0 0|0|0||0|0|falsefalsefalsefalsefalsefalsefalse|unit 0; 0.3 0.105 0.105 0.0675 0.04875; 0.5 0.155 0.155 0.0925 0.06125; 2.5 0.655 0.655 0.3425 0.18625)");
  EXPECT_EQ(
      told("film.dat"),
      R"(film.dat|none|0|||IGDB|Applied film Appearance: |||0|none|false|5|0|0|0|0|0|0|-1|0|-1|0|4|||-1|0||gone.dat|||||none|0 0 0 0|0 0 0 0|0 0 0|0 0 0|0 0 0|0 0 0 0 0 0|0|0||0|1|falsetruefalsefalsetruefalsetrue|unit 0; 0.3 0.125 0.125 0.0875 0.06875; 0.5 0.175 0.175 0.1125 0.08125; 2.5 0.675 0.675 0.3625 0.20625|substrate:||none|0|||||||0|none|false|0|0|0|0|0|0|0|-1|0|-1|0|0|||-1|0|||||||none|0 0 0 0|0 0 0 0|0 0 0|0 0 0|0 0 0|0 0 0 0 0 0|0|0||0|0|falsefalsefalsefalsefalsefalsefalse|)")
      << "its substrate is not there";
  EXPECT_EQ(
      told("stack.dat"),
      R"(stack.dat|none|0|||IGDB|Laminate Appearance: |||0|none|false|6|0|0|0|0|0|0|-1|0|-1|0|5|||-1|0|||||||none|0 0 0 0|0 0 0 0|0 0 0|0 0 0|0 0 0|0 0 0 0 0 0|0|0||0|1|falsefalsefalsefalsetruefalsetrue|unit 0; 0.3 0.135 0.135 0.0975 0.07875; 0.5 0.185 0.185 0.1225 0.09125; 2.5 0.685 0.685 0.3725 0.21625)");
  EXPECT_EQ(database.RetrievePaneIGDB(*igdb, "not there"), nullptr);
}

}  // namespace
}  // namespace orv::test
