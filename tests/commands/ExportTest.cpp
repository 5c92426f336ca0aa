#include "commands/CommandsTest.h"
#include "commands/ExportRecords.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using commands::RecordKind;

class ExportTest : public CommandsTest {
 protected:
  std::string target() const { return (folder.path() / "out").string(); }

  commands::ExportResult exportAll(const Node& node, bool overwrite = false) {
    return commands::exportRecords(session, selectAll(node), {target(), overwrite});
  }
};

TEST_F(ExportTest, OneFileAnAngleAndNothingIsOverwrittenUnasked) {
  const auto database = newDatabase();
  auto& dc = *database->ADOConnection();
  session.database.InsertPane(*withSubstrate(makePane("one.dat")), dc);
  session.database.InsertPane(*makePane("many", 0), dc);
  session.database.InsertPane(*makePane("many", 60), dc);
  session.database.InsertPane(*makePane("a/b:c"), dc);
  const auto panes = recordSet(database, RecordKind::panes);

  const std::vector<std::string> first = {"one.dat", "many_0deg.txt", "many_60deg.txt",
                                          "a_b_c.txt"};
  const auto exported = exportAll(panes);
  EXPECT_EQ(exported.files, first);
  EXPECT_EQ(linesOf(exported.notKept),
            (std::vector<std::string>{
                "integrated values: one.dat, many_0deg.txt, many_60deg.txt, a_b_c.txt",
                "curve of the substrate: one.dat"}));
  EXPECT_EQ(ui.log,
            (std::vector<std::string>{"progress: Exporting records...", "status: Exporting 1...",
                                      "status: Exporting 2...", "status: Exporting 3...",
                                      "status: Ready", "progress ends"}));
  EXPECT_EQ(ui.steps.back(), std::pair(3, 3));
  EXPECT_EQ(exportAll(panes).files, (std::vector<std::string>{"one_2.dat", "many_0deg_2.txt",
                                                              "many_60deg_2.txt", "a_b_c_2.txt"}));
  EXPECT_EQ(exportAll(panes, true).files, first);
  EXPECT_EQ(raisedBy([&] { exportAll(recordSet(database, RecordKind::frames)); }).number,
            kInvalidCall);
}

TEST_F(ExportTest, AnEmissivityThatIsNotThereIsNotWritten) {
  const auto database = newDatabase();
  const auto pane = makePane("pane.txt");
  pane->ORV_Emissivity_front(0);
  pane->ORV_Emissivity_back(0);
  session.database.InsertPane(*pane, *database->ADOConnection());
  exportAll(recordSet(database, RecordKind::panes));
  const std::string text = folder.read("out/pane.txt");
  EXPECT_EQ(text.find("Emis="), std::string::npos) << text;
  EXPECT_EQ(text.find("_Source"), std::string::npos) << text;
  EXPECT_FALSE(session.textFiles.ParseSpectralFile(target(), "pane.txt")->EfExists());

  pane->filename("one.txt");
  pane->ORV_Emissivity_back(0.25);
  session.database.InsertPane(*pane, *database->ADOConnection());
  exportAll(recordSet(database, RecordKind::panes));
  EXPECT_NE(folder.read("out/one.txt").find("Emis= 0 0.25\r\n"), std::string::npos);
}

/// Through files into another database: names that no file can have, several angles, and every
/// field with a value of its own.
TEST_F(ExportTest, AnExportReadBackIsTheSameDatabase) {
  const auto database = newDatabase();
  auto& dc = *database->ADOConnection();
  for (const std::int16_t angle : {0, 45}) {
    const auto pane = makePane("Type 1.5 mm/grey", angle);
    pane->description("described {so}\r\nin two lines");
    pane->ORV_CoatingClass("AB");
    pane->Acceptance("#");
    pane->single_layer(true);
    pane->use_estimation(true);
    pane->Use_0_30_60(true);
    pane->film_outdoor_side(true);
    pane->ORV_Frozen(true);
    pane->SpectralData()->Tf(1, 0.123456F + static_cast<float>(angle) / 1000);
    pane->SpectralData()->Rb(4, 1e-7F);
    session.database.InsertPane(*pane, dc);
  }
  ShadingDataClass shading;
  shading.name("Type 1.5 mm");
  shading.spectrum({ShadingSpectralPoint{.wavelength = 300, .T_out_BB = 0.1}});
  session.database.InsertShading(shading, dc);
  shading.name("a/b");
  session.database.InsertShading(shading, dc);
  EXPECT_EQ(exportAll(recordSet(database, RecordKind::panes)).files,
            (std::vector<std::string>{"Type 1.5 mm_grey_0deg.txt", "Type 1.5 mm_grey_45deg.txt"}));
  const auto blinds = commands::exportRecords(
      session, selectAll(recordSet(database, RecordKind::shadings)), {target() + "/blinds"});
  EXPECT_EQ(blinds.files, (std::vector<std::string>{"Type 1.5 mm.txt", "a_b.txt"}));

  const auto back = newDatabase("back.mdb");
  for (const auto& place : {target(), target() + "/blinds"}) {
    EXPECT_EQ(copyAll(opener.openAny(place), back).copied, 2)
        << ::testing::PrintToString(messages());
  }
  auto& copy = *back->ADOConnection();
  EXPECT_EQ(rowsOf(copy,
                   "SELECT name, product_name, thickness, conduction, emission_IR_outdoor, "
                   "emission_IR_indoor, transmission_IR_outdoor, transmission_IR_indoor, "
                   "single_layer, use_estimation, [0_30_60], film_outdoor_side, freeze, "
                   "coatingcode, acceptance, info FROM Pane"),
            "Type 1.5 mm/grey|Product Type 1.5 mm/grey|5.7|1|0.8399999737739563|"
            "0.10000000149011612|0.125|0.25|True|True|True|True|True|AB|#|described (so)\r\nin two "
            "lines");
  const std::string points =
      "SELECT angle, wavelength, transmission_outdoor, reflection_outdoor, reflection_indoor FROM "
      "Pane_spectral_data ORDER BY angle, wavelength";
  EXPECT_EQ(rowsOf(copy, points), rowsOf(dc, points));
  EXPECT_EQ(rowsOf(copy, "SELECT name FROM Shading ORDER BY name"), "a/b Type 1.5 mm");
}

}  // namespace
}  // namespace orv::test
