// Copies of records that the destination has already.
#include "commands/CommandsTest.h"

namespace orv::test {
namespace {

using commands::IfThere;
using commands::PasteResult;
using commands::RecordKind;
using commands::TextFileKind;
using Lines = std::vector<std::string>;

const char* const kRows =
    "SELECT Pane.PaneID, name, product_name, GroupName, i.angle, i.reflection_solar_outdoor FROM "
    "(Pane INNER JOIN Groups ON Pane.groupID = Groups.GroupID) INNER JOIN Pane_integrated_data i "
    "ON Pane.PaneID = i.PaneID ORDER BY Pane.PaneID, i.angle";

class ReplaceTest : public CommandsTest {
 protected:
  PasteResult copy(const Node& from, std::optional<IfThere> ifThere,
                   RecordKind kind = RecordKind::panes) {
    return copyAll(recordSet(from, kind), to, {.ifThere = ifThere, .integrateBy = std::nullopt});
  }

  /// A database with a pane at some angles, told apart by its product and a value.
  Node panes(const std::string& file, const std::string& name, const std::string& product,
             float value, const std::vector<std::int16_t>& angles) {
    const auto from = newDatabase(file);
    for (const std::int16_t angle : angles) {
      const auto pane = makePane(name, angle);
      pane->productname(product);
      pane->Precalc_Rfsol(value);
      session.database.InsertPane(*pane, *from->ADOConnection());
    }
    return from;
  }

  std::string written(const std::string& statement) {
    return rowsOf(*to->ADOConnection(), statement);
  }

  Node to = newDatabase("to.mdb");
};

TEST_F(ReplaceTest, APaneOfADatabaseIsReplacedAsAWholeAndKeepsItsKey) {
  copy(panes("other.mdb", "other", "Other", 0.5F, {0}), {});
  copy(panes("old.mdb", "pane", "Old", 0.25F, {0, 30}), {});
  const auto fresh = panes("new.mdb", "PANE", "New", 0.125F, {0, 60});
  const PasteResult result = copy(fresh, IfThere::replace);
  EXPECT_EQ(result.summary(), "0 records copied, 1 replaced.");
  EXPECT_EQ(written(kRows),
            "1|other|Other|Demo|0|0.5 2|PANE|New|Demo|0|0.125 2|PANE|New|Demo|60|0.125");
  EXPECT_EQ(written("SELECT PaneID, angle, COUNT(*) FROM Pane_spectral_data GROUP BY PaneID, angle "
                    "ORDER BY PaneID, angle"),
            "1|0|5 2|0|5 2|60|5");
  EXPECT_EQ(linesOf(result.notes),
            Lines{"replaced; the data at 30 degrees, where the source has none, are gone: PANE"});

  // What is refused at one angle leaves all that is there.
  setAll(*fresh->ADOConnection(), "Pane", "product_name", "Newest");
  setAll(*fresh->ADOConnection(), "Pane_spectral_data", "reflection_outdoor", 1.5, "angle = 60");
  const std::string before = written(kRows);
  EXPECT_EQ(copy(fresh, IfThere::replace).summary(), "0 records copied, 1 failed.");
  EXPECT_EQ(written(kRows), before);
  EXPECT_NE(messages().back().find("(PANE at 60 degrees)"), std::string::npos) << messages().back();
}

TEST_F(ReplaceTest, ATextFileReplacesItsAngleOnly) {
  copy(panes("old.mdb", "pane", "Old", 0.25F, {0, 30}), {});
  const std::string entries = "{ Record Name: pane }{ Angle of Incidence: 30 }\n";
  const auto files = texts(TextFileKind::panes, {{"a.txt", entries + paneText("New")},
                                                 {"b.txt", entries + paneText("Twin")}});
  const PasteResult result = copy(files, IfThere::replace);
  EXPECT_EQ(result.summary(), "0 records copied, 1 replaced, 1 failed.");
  EXPECT_EQ(written(kRows), "1|pane|New|Demo|0|0.25 1|pane|New|Demo|30|0");
  EXPECT_NE(messages().back().find("This copy has written the record a.txt under the same name"),
            std::string::npos)
      << messages().back();
  EXPECT_EQ(linesOf(result.notes).front(),
            "replaced; the data at 0 degrees, where the source has none, are kept: pane");
}

TEST_F(ReplaceTest, WhatIsThereIsPassedOverAndOtherAnglesAreAdded) {
  copy(panes("old.mdb", "pane", "Old", 0.25F, {0}), {});
  const std::size_t told = messages().size();
  const auto both = panes("new.mdb", "pane", "New", 0.125F, {0, 30});
  EXPECT_EQ(copy(both, IfThere::skip).summary(), "1 record copied.");
  EXPECT_EQ(written(kRows), "1|pane|Old|Demo|0|0.25 1|pane|Old|Demo|30|0.125");
  EXPECT_EQ(copy(both, IfThere::skip).summary(), "0 records copied, 1 skipped.");
  EXPECT_EQ(messages().size(), told + 2) << "the questions for the group only";
  EXPECT_EQ(copy(both, {}).summary(), "0 records copied, 1 failed.");
}

TEST_F(ReplaceTest, TheAnswerOfTheUserIsFollowed) {
  copy(panes("old.mdb", "pane", "Old", 0.25F, {0, 30}), {});
  const auto fresh = panes("new.mdb", "pane", "New", 0.125F, {0, 30});
  ui.existing = IfThere::skip;
  EXPECT_EQ(copy(fresh, {}).summary(), "0 records copied, 1 skipped.");
  ui.existing = IfThere::replace;
  EXPECT_EQ(copy(fresh, {}).summary(), "0 records copied, 1 replaced.");
  EXPECT_EQ(written(kRows), "1|pane|New|Demo|0|0.125 1|pane|New|Demo|30|0.125");
}

TEST_F(ReplaceTest, FramesAndShadingsKeepTheirKeysToo) {
  const auto from = newDatabase("from.mdb");
  auto& dc = *from->ADOConnection();
  FrameDataClass frame;
  frame.name("frame");
  frame.u_value(1.5);
  session.database.InsertFrame(frame, dc);
  ShadingDataClass shading;
  shading.name("blind");
  shading.productname("Old");
  shading.spectrum({{.wavelength = 300}, {.wavelength = 400}});
  session.database.InsertShading(shading, dc);
  for (const RecordKind kind : {RecordKind::frames, RecordKind::shadings}) {
    EXPECT_EQ(copy(from, {}, kind).copied, 1);
    EXPECT_EQ(copy(from, IfThere::skip, kind).summary(), "0 records copied, 1 skipped.");
  }
  setAll(*to->ADOConnection(), "Frame", "product_name", "Old");
  setAll(dc, "Frame", "u_value", 2.5);
  setAll(dc, "Shading", "productname", "New");
  setAll(dc, "Shading_spectral_data", "wavelength", 500);
  EXPECT_EQ(copy(from, IfThere::replace, RecordKind::frames).replaced, 1);
  EXPECT_EQ(copy(from, IfThere::replace, RecordKind::shadings).replaced, 1);
  EXPECT_EQ(written("SELECT FrameID, name, u_value, product_name FROM Frame"), "1|frame|2.5|Old");
  EXPECT_EQ(written("SELECT Shading_id, name, productname FROM Shading"), "1|blind|New");
  EXPECT_EQ(written("SELECT Shading_ID, wavelength FROM Shading_spectral_data"), "1|500 1|500");

  session.database.InsertShading(shading, dc);
  EXPECT_EQ(copy(from, IfThere::replace, RecordKind::shadings).summary(),
            "0 records copied, 1 replaced, 1 failed.");
  EXPECT_NE(messages().back().find("This copy has written the record 1 under the same name"),
            std::string::npos)
      << messages().back();
}

}  // namespace
}  // namespace orv::test
