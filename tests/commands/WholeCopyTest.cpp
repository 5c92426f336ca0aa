// What a copy leaves out or refuses, and that it says so.
#include <gmock/gmock.h>

#include "commands/CommandsTest.h"
#include "commands/ExportRecords.h"
#include "commands/IntegrateRecords.h"
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

TEST_F(WholeCopyTest, EachDirectionIsReadByItselfAndTheFirstIsCopied) {
  const auto from = newDatabase("from.mdb");
  auto& dc = *from->ADOConnection();
  insert(makePane("pane"), from);
  setAll(dc, "Pane_spectral_data", "direction", 2);
  for (const double wavelength : {300.0, 700.0}) {
    addRow(dc, "Pane_spectral_data",
           {{"PaneID", 1},
            {"angle", 0},
            {"direction", 1},
            {"wavelength", wavelength},
            {"transmission_outdoor", 0.25},
            {"reflection_outdoor", 0.125},
            {"reflection_indoor", 0.0625},
            {"transmission_sub", 0},
            {"reflection_sub", 0}});
  }
  const RecordReader reader(session, recordSet(from, RecordKind::panes));
  EXPECT_EQ(reader.directions("1", 0), (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(reader.pane("1", 0)->ORV_Direction(), 1) << "the first";
  const auto sets = reader.dataSets("1");
  ASSERT_EQ(sets.size(), 2U);
  EXPECT_EQ(sets[0]->SpectralData()->count(), 2);
  EXPECT_EQ(sets[1]->ORV_Direction(), 2);
  EXPECT_EQ(sets[1]->SpectralData()->count(), 5);

  const PasteResult result = copyAll(from);
  EXPECT_EQ(result.copied, 1) << lastFailure();
  EXPECT_EQ(written("SELECT wavelength, transmission_outdoor FROM Pane_spectral_data ORDER BY "
                    "wavelength"),
            "300|0.25 700|0.25");
  EXPECT_EQ(linesOf(result.notes),
            Lines{"of the spectra of the directions 1, 2 at 0 degrees only that of direction 1 is "
                  "copied: pane"});
  const auto panes = recordSet(from, RecordKind::panes);
  commands::integrateRecords(session, selectAll(panes), {}, [](const auto& row) {
    EXPECT_THAT(row.note(), ::testing::EndsWith("; without the spectrum of direction 2"));
  });
  for (const auto form : {commands::ExportForm::text, commands::ExportForm::csv}) {
    const auto joined = commands::exportJoined(session, selectAll(panes), form);
    EXPECT_EQ(linesOf(joined.notKept).front(), "spectrum of direction 2 at 0 degrees: pane");
  }
  const std::string folderName = (folder.path() / "out").string();
  const auto files = commands::exportRecords(session, selectAll(panes), {folderName});
  EXPECT_EQ(linesOf(files.notKept).front(), "spectrum of direction 2 at 0 degrees: pane");
}

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

TEST_F(WholeCopyTest, ARefusedPaneLeavesNothingAndIsCopiedOnceItIsRight) {
  const auto files = texts(TextFileKind::panes,
                           {{"a.txt", "SI Nanometers 3 1\n500 0.8 0.1 0.1\n600 0.7 1.25 0.1\n"}});
  EXPECT_EQ(copyAll(files).failed, 1);
  EXPECT_EQ(
      lastFailure(),
      "failure (ORV database manager): The record a.txt could not be copied: \nThe spectral "
      "data of this pane is invalid. The values may be unphysical.\npoint 2, 600 nm: the "
      "front reflectance is 1.25, not from 0 to 1\nIf this is a text file, check its format.");
  expectEmpty();
  folder.write("a.txt", "SI Nanometers 3 1\n500 0.8 0.1 0.1\n600 0.7 0.125 0.1\n");
  EXPECT_EQ(copyAll(files).copied, 1);
  EXPECT_EQ(written("SELECT reflection_outdoor FROM Pane_spectral_data WHERE wavelength = 600"),
            "0.125");

  folder.write("a.txt", "SI Nanometers 3 1\n500 0.8 0.1 0.1\n600 0.7 1.25 0.1\n");
  copyAll(files);
  EXPECT_NE(lastFailure().find("A record with this name (a.txt) already exists."),
            std::string::npos)
      << "that comes first";
}

TEST_F(WholeCopyTest, APaneOfMorePointsThanCanBeReadIsRefused) {
  std::string text = "SI Nanometers 3 1\n";
  for (int i = 0; i < 32768; ++i) text += std::to_string(300 + i) + " 0.5 0.1 0.2\n";
  const auto files = texts(TextFileKind::panes, {{"long.txt", text}});
  EXPECT_EQ(copyAll(files).failed, 1);
  EXPECT_NE(lastFailure().find("The spectrum has 32768 points; 32767 is the most"),
            std::string::npos)
      << lastFailure();
  expectEmpty();
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

TEST_F(WholeCopyTest, WhatIsNotThereIsNamed) {
  const auto from = newDatabase("from.mdb");
  addRow(*from->ADOConnection(), "Pane", {{"name", "bare"}});
  const auto panes = recordSet(from, RecordKind::panes);
  const auto result = commands::pasteRecords(session, select(panes, {"1", "7"}), to);
  EXPECT_EQ(result.withoutData, 1);
  EXPECT_EQ(result.failed, 1);
  const std::string ending = "\nIf this is a text file, check its format.";
  EXPECT_EQ(messages(), (Lines{"failure (ORV database manager): The record 1 could not be copied: "
                               "\nThe pane has data at no angle of incidence: there is nothing to "
                               "copy." +
                                   ending,
                               "failure (ORV database manager): The record 7 could not be copied: "
                               "\nThis record was not found in its data source." +
                                   ending}));
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

TEST_F(WholeCopyTest, WhatTheSchemaHasNoPlaceForIsTold) {
  const auto from = newDatabase("from.mdb");
  insert(withSubstrate(makePane("pane")), from);
  setAll(*from->ADOConnection(), "Pane", "Ra", 3);
  EXPECT_EQ(linesOf(copyAll(from).notKept),
            (Lines{"Ra: pane",
                   "reflectance of the substrate (its transmittance takes its place): pane"}));
  FrameDataClass frame;
  frame.name("frame");
  session.database.InsertFrame(frame, *from->ADOConnection());
  setAll(*from->ADOConnection(), "Frame", "product_name", "Oak 68");
  EXPECT_EQ(linesOf(copyAll(from, RecordKind::frames).notKept), Lines{"product name: frame"});

  const auto files =
      texts(TextFileKind::panes,
            {{"a.txt",
              "SI Microns 3 1\n{ Type: Coated }{ Material: N/A }{ Coating Name: Silver }{ NFRC "
              "ID: 77 }{ Appearance: blue }{ Description: told }\n0.5 0.8 0.1 0.1\n"},
             {"b.txt", paneText()},
             {"c.txt", "SI Microns 3 1\nEmis= 0.84\n0.5 0.8 0.1 0.1\n"}});
  const PasteResult result = copyAll(files);
  EXPECT_EQ(linesOf(result.notKept), (Lines{"appearance: a.txt", "type: a.txt, b.txt",
                                            "coating name: a.txt", "NFRC id: a.txt"}));
  EXPECT_TRUE(result.notes.list().empty());
  EXPECT_EQ(linesOf(result.zeros),
            (Lines{"integrated values: a.txt, b.txt, c.txt", "emissivities: a.txt"}));
  EXPECT_EQ(result.zeros.counts(), "integrated values (3), emissivities (1)");
  EXPECT_EQ(result.zeros.list()[0].line(1), "integrated values: a.txt and 2 more");
}

TEST_F(WholeCopyTest, WhatIsDoubtfulIsTold) {
  const std::string start = "SI Nanometers 3 1\nEmis= 0.84 0.84\n";
  const auto files = texts(
      TextFileKind::panes,
      {{"back.txt", start + "500 0.875 0.125 0.1275\n"},
       {"front.txt", start + "500 0.875 0.1275 0.125\n"},
       {"right.txt", start + "{ Angle of Incidence: 90 }\n500 0.875 0.125 0.125\n"},
       {"steep.txt", start + "{ Angle of Incidence: 91 }\n500 0.875 0.12505 0.125\n"},
       {"twice.txt", start + "500 0.5 0.125 0.125\n600 0.5 0.1 0.1\n500 0.25 0.125 0.125\n"}});
  EXPECT_EQ(linesOf(copyAll(files).notes),
            (Lines{"transmittance and reflectance add up to more than 1: back.txt, front.txt",
                   "91 degrees are no angle of incidence: steep.txt",
                   "a wavelength occurs twice: twice.txt"}));
  const auto blinds = texts(
      TextFileKind::shadings,
      {{"coated.txt", "{ Units: Nanometers }{ Coated Side: Front }\n300 0 0 0 0 0 0 0 0\n"},
       {"unknown.txt", "{ Units: Nanometers }{ Coated Side: Unknown }\n300 0 0 0 0 0 0 0 0\n"}});
  EXPECT_EQ(linesOf(copyAll(blinds, RecordKind::shadings).notKept), Lines{"coated side: coated"});
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

TEST_F(WholeCopyTest, TheFilesThatATextNamesAreReadWithIt) {
  const std::string substrate = "SI Microns 4 1\n0.5 0.9 0.05 0.05\n0.6 0.85 0.04 0.04\n";
  const auto coated = [](const std::string& named) {
    return "SI Microns 4 1\n{ Substrate Filename: " + named +
           " }\n0.5 0.7 0.1 0.2\n0.6 0.6 0.15 0.25\n";
  };
  folder.write("clear.txt", substrate);
  const auto files = texts(TextFileKind::panes, {{"coated.txt", coated("CLEAR.TXT")},
                                                 {"lost.txt", coated("gone.txt")},
                                                 {"ring.txt", coated("ring2.txt")}});
  folder.write("ring2.txt", coated("ring.txt"));
  const PasteResult result = copyAll(files);
  EXPECT_EQ(result.copied, 3) << lastFailure();
  EXPECT_EQ(written("SELECT p.name, p.with_and_without_film, s.transmission_sub, s.reflection_sub "
                    "FROM Pane AS p INNER JOIN Pane_spectral_data AS s ON p.PaneID = s.PaneID "
                    "WHERE s.wavelength > 550 ORDER BY p.name"),
            "coated.txt|True|0.85|0.04 lost.txt|False|0|0 ring.txt|False|0|0");
  const Lines notes = linesOf(result.notes);
  EXPECT_EQ(notes[0],
            "copied without the files that it names: There is no file 'gone.txt' in the "
            "folder '" +
                folder.path().string() + "'. The file 'lost.txt' names it: lost.txt");
  EXPECT_EQ(notes[1],
            "copied without the files that it names: These files refer to each other in "
            "a circle: ring.txt, ring2.txt, ring.txt: ring.txt");
}

}  // namespace
}  // namespace orv::test
