// What a copy leaves out or refuses, and that it says so.
#include "commands/CommandsTest.h"
#include "commands/RecordReader.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using commands::PasteResult;
using commands::RecordKind;
using commands::RecordReader;
using commands::TextFileKind;

using Lines = std::vector<std::string>;

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
      if (column.name == "angle" && table.name != "Shading") {
        column.type = store::ColumnType::double_;
      }
    }
  });
  insert(makePane("pane", 30), from);
  setAll(*from->ADOConnection(), "Pane_integrated_data", "angle", 30.4);
  setAll(*from->ADOConnection(), "Pane_spectral_data", "angle", 30.4);
  const PasteResult result = copyAll(from);
  EXPECT_EQ(result.failed, 1);
  EXPECT_EQ(lastFailure(),
            "failure (ORV database manager): The record 1 could not be copied: \nThe pane "
            "\"pane\" has data at 30.4 degrees, and only whole degrees can be read. Change the "
            "angle in Pane_integrated_data and Pane_spectral_data.\nIf this is a text file, check "
            "its format.");
  expectEmpty();
  setAll(*from->ADOConnection(), "Pane_integrated_data", "angle", 30.0);
  setAll(*from->ADOConnection(), "Pane_spectral_data", "angle", 30.0);
  EXPECT_EQ(copyAll(from).copied, 1) << lastFailure();
}

TEST_F(WholeCopyTest, TheMarkOfMissingValuesIsNotCopiedAsAValue) {
  const auto from = newDatabase("from.mdb");
  insert(makePane("pane"), from);
  setAll(*from->ADOConnection(), "Pane_integrated_data", "reflection_solar_outdoor", -1);
  const auto panes = recordSet(from, RecordKind::panes);
  EXPECT_EQ(CommandsTest::copyAll(panes, to, {.integrateBy = std::nullopt}).failed, 1);
  EXPECT_NE(lastFailure().find("Correct reflection_solar_outdoor in the source."),
            std::string::npos);
  expectEmpty();
}

TEST_F(WholeCopyTest, NamesWithAnApostropheAreRefusedBeforeAnythingIsWritten) {
  const auto refusal = [](const std::string& record, const std::string& name) {
    return "failure (ORV database manager): The record " + record + " could not be copied: \nThe " +
           name +
           " holds an apostrophe ('), and databases cannot be searched for such a name. Leave the "
           "apostrophe out, or write ’ in its place.\nIf this is a text file, check its format.";
  };
  const auto files =
      texts(TextFileKind::panes,
            {{"clear.txt", paneText()},
             {"y' OR name='clear.txt", paneText("Injected")},
             {"maker.txt", "SI Microns 3 1\n{ Manufacturer: O'Neil }\n0.5 0.8 0.1 0.1\n"}});
  const PasteResult result = copyAll(files);
  EXPECT_EQ(result.copied, 1);
  EXPECT_EQ(result.failed, 2);
  const Lines log = messages();
  EXPECT_EQ(log[1], refusal("y' OR name='clear.txt", "name of the pane \"y' OR name='clear.txt\""));
  EXPECT_EQ(log[2], refusal("maker.txt", "supplier \"O'Neil\""));
  EXPECT_EQ(written("SELECT name, groupID, product_name FROM Pane"), "clear.txt|1|Clear");
  EXPECT_EQ(written("SELECT SupplierName FROM Suppliers"), "Unknown");

  ui.log.clear();
  ui.inputs = {"O''Neil", "O’Neil"};
  folder.write("clear.txt", paneText());
  EXPECT_EQ(commands::pasteRecords(session, select(files, {"clear.txt"}), to).copied, 1);
  EXPECT_EQ(
      messages()[1],
      "critical (ORV database manager): O''Neil is not a valid group name.\nThe group "
      "\"O''Neil\" holds an apostrophe ('), and databases cannot be searched for such a name. "
      "Leave the apostrophe out, or write ’ in its place.");
  EXPECT_EQ(written("SELECT GroupName FROM Groups ORDER BY GroupID"), "Demo O’Neil");

  const auto from = newDatabase("from.mdb");
  FrameDataClass frame;
  frame.name("frame");
  session.database.InsertFrame(frame, *from->ADOConnection());
  setAll(*from->ADOConnection(), "FrameTypes", "FrameTypeName", "Carpenter's");
  EXPECT_EQ(copyAll(from, RecordKind::frames).failed, 1);
  EXPECT_EQ(lastFailure(), refusal("1", "frame type \"Carpenter's\""));
  ShadingDataClass shading;
  session.database.InsertShading(shading, *from->ADOConnection());
  setAll(*from->ADOConnection(), "Suppliers", "SupplierName", "O'Neil");
  EXPECT_EQ(copyAll(from, RecordKind::shadings).failed, 1);
  EXPECT_EQ(lastFailure(), refusal("1", "supplier \"O'Neil\""));
}

/// Otherwise the pane would be read with a substrate of zeros, which the next copy writes as data.
TEST_F(WholeCopyTest, APaneWhoseSubstrateWasDroppedIsStoredAsOneWithout) {
  const auto from = newDatabase("from.mdb");
  insert(withSubstrate(makePane("pane")), from);
  setAll(*from->ADOConnection(), "Pane_spectral_data", "transmission_sub", 1.5);
  ui.answers = {commands::Answer::yes, commands::Answer::no};
  const PasteResult result = copyAll(from);
  EXPECT_EQ(result.copied, 1) << lastFailure();
  EXPECT_EQ(written("SELECT with_and_without_film FROM Pane"), "False");
  EXPECT_FALSE(
      RecordReader(session, recordSet(to, RecordKind::panes)).pane("1", 0)->HasSubstrate());
  EXPECT_EQ(linesOf(result.notes), Lines{"copied without the data of the substrate: pane"});
}

TEST_F(WholeCopyTest, EachFailureNamesThePaneAndTheAngle) {
  const auto from = newDatabase("from.mdb");
  for (const std::int16_t angle : {0, 30, 60}) insert(makePane("pane", angle), from);
  insert(makePane("other"), from);
  insert(makePane("pane", 30), to);
  const PasteResult some = copyAll(from);
  EXPECT_EQ(some.copied, 1);
  EXPECT_EQ(some.partly, 1);
  EXPECT_EQ(some.failed, 0);
  const auto conflict = [](const std::string& part) {
    return "failure (ORV database manager): The record 1 could not be copied: \nA record with this "
           "name (pane) already exists.\n\n(pane at " +
           part + " degrees)\nIf this is a text file, check its format.";
  };
  EXPECT_EQ(lastFailure(), conflict("30"));
  ui.log.clear();
  const PasteResult none = copyAll(from);
  EXPECT_EQ(none.copied + none.partly, 0);
  EXPECT_EQ(none.failed, 2);
  EXPECT_EQ(messages()[1], conflict("0"));
  EXPECT_EQ(messages()[3], conflict("60"));
}

TEST_F(WholeCopyTest, AnErrorWhileTheWorkIsCountedNamesTheRecord) {
  const auto from = newDatabase("from.mdb");
  insert(makePane("good"), from);
  insert(makePane("null"), from);
  setAll(*from->ADOConnection(), "Pane_integrated_data", "angle", {}, "PaneID = 2");
  const auto raised = raisedBy([&] { copyAll(from); });
  EXPECT_TRUE(raised.description.starts_with("The angles of the record 2 cannot be read: "))
      << raised.description;
  EXPECT_TRUE(raised.description.ends_with(" Nothing was copied.")) << raised.description;
  expectEmpty();
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
  EXPECT_EQ(linesOf(result.notes), Lines{"in place of a picture the source has a text, which is "
                                         "kept: C:\\frames\\oak.bmp: frame"});
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
