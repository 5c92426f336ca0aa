// What a copy leaves out or refuses, and that it says so.
#include "commands/CommandsTest.h"
#include "commands/RecordReader.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using commands::PasteResult;
using commands::RecordKind;
using commands::RecordReader;

class WholeCopyTest : public CommandsTest {
 protected:
  PasteResult copyAll(const Node& from, RecordKind kind = RecordKind::panes) {
    return CommandsTest::copyAll(recordSet(from, kind), to);
  }

  void insert(const std::shared_ptr<GlazingData>& pane, const Node& node) {
    session.database.InsertPane(*pane, *node->ADOConnection());
  }

  std::string written(const std::string& statement) {
    return rowsOf(*to->ADOConnection(), statement);
  }

  /// Nothing was written, no name of a group or supplier either.
  void expectEmpty() {
    for (const char* table : {"Pane", "Pane_integrated_data", "Pane_spectral_data", "Groups",
                              "Suppliers", "Frame", "Shading"}) {
      EXPECT_EQ(written(std::string("SELECT * FROM ") + table), "") << table;
    }
  }

  std::string lastFailure() { return messages().empty() ? "" : messages().back(); }

  Node to = newDatabase("to.mdb");
};

TEST_F(WholeCopyTest, AnAngleThatIsNoWholeNumberIsRefusedByName) {
  const auto from = changedDatabase("from.mdb", [](store::TableInfo& table) {
    for (auto& column : table.columns) {
      if (column.name == "angle") column.type = store::ColumnType::double_;
    }
  });
  const auto setAngle = [&](double angle) {
    for (const char* table : {"Pane_integrated_data", "Pane_spectral_data"}) {
      changeTable(*from->ADOConnection(), fmt::format("{} angle={}", table, angle));
    }
  };
  insert(makePane("pane", 30), from);
  setAngle(30.4);
  EXPECT_EQ(copyAll(from).failed, 1);
  const RecordReader reader(session, recordSet(from, RecordKind::panes));
  EXPECT_EQ(raisedBy([&] { reader.pane("1", 30); }).number, kTypeMismatch);
  EXPECT_EQ(lastFailure(),
            "failure (ORV database manager): The record 1 could not be copied: \nThe pane "
            "\"pane\" has data at 30.4 degrees, and only whole degrees can be read. Change the "
            "angle in Pane_integrated_data and Pane_spectral_data.\nIf this is a text file, check "
            "its format.");
  expectEmpty();
  setAngle(30);
  EXPECT_EQ(copyAll(from).copied, 1) << lastFailure();
}

TEST_F(WholeCopyTest, TheMarkOfMissingValuesIsNotCopiedAsAValue) {
  const auto from = newDatabase("from.mdb");
  insert(makePane("pane"), from);
  changeTable(*from->ADOConnection(), "Pane_integrated_data reflection_solar_outdoor=-1");
  const auto panes = recordSet(from, RecordKind::panes);
  EXPECT_EQ(CommandsTest::copyAll(panes, to, {.integrateBy = std::nullopt}).failed, 1);
  EXPECT_NE(lastFailure().find("Correct reflection_solar_outdoor in the source."),
            std::string::npos);
  expectEmpty();
}

TEST_F(WholeCopyTest, AFrameTypeWithAnApostropheIsRefusedBeforeAnythingIsWritten) {
  const auto from = newDatabase("from.mdb");
  FrameDataClass frame;
  frame.name("frame");
  session.database.InsertFrame(frame, *from->ADOConnection());
  changeTable(*from->ADOConnection(), "FrameTypes FrameTypeName=Carpenter's");
  EXPECT_EQ(copyAll(from, RecordKind::frames).failed, 1);
  EXPECT_EQ(lastFailure(),
            "failure (ORV database manager): The record 1 could not be copied: \nThe frame type "
            "\"Carpenter's\" holds an apostrophe ('), and databases cannot be searched for such a "
            "name. Leave the apostrophe out, or write ’ in its place.\nIf this is a text file, "
            "check its format.");
  expectEmpty();
}

/// Otherwise the pane would be read with a substrate of zeros, which the next copy writes as data.
TEST_F(WholeCopyTest, APaneWhoseSubstrateWasDroppedIsStoredAsOneWithout) {
  const auto from = newDatabase("from.mdb");
  insert(withSubstrate(makePane("pane")), from);
  changeTable(*from->ADOConnection(), "Pane_spectral_data transmission_sub=1.5");
  ui.answers = {commands::Answer::yes, commands::Answer::no};
  const PasteResult result = copyAll(from);
  EXPECT_EQ(result.copied, 1) << lastFailure();
  EXPECT_EQ(written("SELECT with_and_without_film FROM Pane"), "False");
  EXPECT_FALSE(
      RecordReader(session, recordSet(to, RecordKind::panes)).pane("1", 0)->HasSubstrate());
  EXPECT_EQ(linesOf(result.notes),
            std::vector<std::string>{"copied without the data of the substrate: pane"});
}

TEST_F(WholeCopyTest, EachFailureNamesThePaneAndTheAngle) {
  const auto from = newDatabase("from.mdb");
  for (const std::int16_t angle : {0, 30, 60}) insert(makePane("pane", angle), from);
  insert(makePane("other"), from);
  insert(makePane("pane", 30), to);
  EXPECT_EQ(copyAll(from).summary(), "1 record copied, 1 in part.");
  const auto conflict = [](const std::string& part) {
    return "failure (ORV database manager): The record 1 could not be copied: \nA record with this "
           "name (pane) already exists.\n\n(pane at " +
           part + " degrees)\nIf this is a text file, check its format.";
  };
  EXPECT_EQ(lastFailure(), conflict("30"));
  ui.log.clear();
  EXPECT_EQ(copyAll(from).summary(), "0 records copied, 2 failed.");
  EXPECT_EQ(messages()[1], conflict("0"));
  EXPECT_EQ(messages()[3], conflict("60"));
}

TEST_F(WholeCopyTest, APaneIsReplacedAsAWholeOrPassedOverAsTheUserSays) {
  const auto panes = [&](const std::string& name, const std::string& product,
                         const std::vector<std::int16_t>& angles) {
    const auto from = newDatabase(product + ".mdb");
    for (const std::int16_t angle : angles) {
      const auto pane = makePane(name, angle);
      pane->productname(product);
      insert(pane, from);
    }
    return from;
  };
  const auto rows = [&] {
    return written(
        "SELECT Pane.PaneID, name, product_name, angle, COUNT(*) FROM Pane INNER JOIN "
        "Pane_spectral_data ON Pane.PaneID = Pane_spectral_data.PaneID GROUP BY Pane.PaneID, name, "
        "product_name, angle ORDER BY Pane.PaneID, angle");
  };
  copyAll(panes("other", "Other", {0}));
  copyAll(panes("pane", "Old", {0, 30}));
  const auto fresh = panes("PANE", "New", {0, 60});
  ui.existing = commands::IfThere::skip;
  EXPECT_EQ(copyAll(fresh).summary(), "1 record copied.") << "an angle that is not there is added";
  EXPECT_EQ(rows(), "1|other|Other|0|5 2|pane|Old|0|5 2|pane|Old|30|5 2|pane|Old|60|5");
  EXPECT_EQ(copyAll(fresh).summary(), "0 records copied, 1 skipped.");
  ui.existing = commands::IfThere::replace;
  EXPECT_EQ(copyAll(fresh).summary(), "0 records copied, 1 replaced.");
  const std::string replaced = "1|other|Other|0|5 2|PANE|New|0|5 2|PANE|New|60|5";
  EXPECT_EQ(rows(), replaced);

  changeTable(*fresh->ADOConnection(), "Pane product_name=Newest");
  changeTable(*fresh->ADOConnection(),
              "Pane_spectral_data reflection_outdoor=1.5 where angle = 60");
  EXPECT_EQ(copyAll(fresh).summary(), "0 records copied, 1 failed.");
  EXPECT_NE(lastFailure().find("(PANE at 60 degrees)"), std::string::npos) << lastFailure();
  EXPECT_EQ(rows(), replaced) << "what is refused at one angle leaves all that is there";
}

TEST_F(WholeCopyTest, APictureThatIsATextIsKept) {
  const auto withText = [](store::TableInfo& table) {
    for (auto& column : table.columns) {
      if (column.name == "picture") column.type = store::ColumnType::memo;
    }
  };
  const auto from = changedDatabase("from.mdb", withText);
  FrameDataClass frame;
  frame.name("frame");
  frame.pictureText("C:\\frames\\oak.bmp");
  session.database.InsertFrame(frame, *from->ADOConnection());
  to = changedDatabase("other.mdb", withText);
  const PasteResult result = copyAll(from, RecordKind::frames);
  EXPECT_EQ(result.copied, 1) << lastFailure();
  EXPECT_EQ(written("SELECT picture FROM Frame"), "C:\\frames\\oak.bmp");
  EXPECT_EQ(linesOf(result.notes),
            std::vector<std::string>{"in place of a picture the source has a text, which is kept: "
                                     "C:\\frames\\oak.bmp: frame"});
  to = newDatabase("ole.mdb");
  EXPECT_EQ(copyAll(from, RecordKind::frames).copied, 1) << lastFailure();
  const auto picture =
      RecordReader(session, recordSet(to, RecordKind::frames)).frame("1")->picture();
  EXPECT_EQ(std::string(picture.begin(), picture.end()), "C:\\frames\\oak.bmp");
}

TEST_F(WholeCopyTest, IntegratedColumnsOfAShadingAreFoundWhateverTheirCase) {
  to = changedDatabase("other.mdb", [](store::TableInfo& table) {
    if (table.name != "Shading_integrated_data_temp") return;
    for (auto& column : table.columns) {
      if (column.name == "angle") column.name = "Angle";
      if (column.name == "reflection_solar_outdoor") column.name = "Reflection_Solar_Outdoor";
    }
  });
  const auto from = newDatabase("from.mdb");
  ShadingDataClass shading;
  shading.name("blind");
  shading.integrated({{.angle = 45, .reflection_solar_outdoor = 0.375}});
  session.database.InsertShading(shading, *from->ADOConnection());
  EXPECT_EQ(copyAll(from, RecordKind::shadings).copied, 1) << lastFailure();
  EXPECT_EQ(written("SELECT Angle, Reflection_Solar_Outdoor FROM Shading_integrated_data_temp"),
            "45|0.375");
}

}  // namespace
}  // namespace orv::test
