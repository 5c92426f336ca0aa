// Files of products as data sources, and exports of the forms that they have.
#include "commands/CommandsTest.h"
#include "commands/ExportRecords.h"
#include "commands/RecordReader.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using commands::ExportForm;

/// A flat product with values of its own.
std::string product(const std::string& name, double transmittance) {
  return fmt::format(R"({{"name": "{}", "measured_data": {{"thickness": 4, "conductivity": 1}},
    "integrated_results_summary": [{{"calculation_standard_name": "NFRC", "tfsol": 0.5}}],
    "spectral_data": {{"spectral_data": [{{"wavelength": 0.3, "T": {}, "Rf": 0.1, "Rb": 0.2}},
                                        {{"wavelength": 0.305}}]}}}})",
                     name, transmittance);
}

class ProductSourceTest : public CommandsTest {
 protected:
  std::string target() const { return (folder.path() / "out").string(); }

  std::vector<std::string> names(const Node& node) {
    std::vector<std::string> names;
    for (const auto& entry : commands::listRecords(session, node)) {
      names.push_back(entry.identifier + (entry.failure.empty() ? " = " : " fails: ") +
                      (entry.failure.empty() ? entry.name : entry.failure));
    }
    return names;
  }
};

TEST_F(ProductSourceTest, AFolderMayMixTextsProductsAndListsOfThem) {
  folder.write("a.txt", "SI Microns 4 1\n0.3 0.1 0.1 0.1\n");
  folder.write("b.JSON", product("b", 0.2));
  folder.write("c.json", "[" + product("c0", 0.3) + ", {\"x\": 1}, " + product("c2", 0.4) + "]");
  folder.write("d.json", "{\n]");
  const auto node = opener.openAny(folder.path().string());
  const std::vector<std::string> expected = {
      "a.txt = a.txt",
      "b.JSON = b",
      "c.json#/0 = c0",
      "c.json#/1 fails: This is no product of a known form: there is neither "
      "/spectral_data/spectral_data, "
      "/physical_properties/optical_properties/optical_data/angle_blocks nor "
      "/measured_data/spectral_data/angle_block\nc.json, /1: an object",
      "c.json#/2 = c2",
      "d.json fails: This is no JSON: syntax error while parsing object key - unexpected ']'; "
      "expected string literal\nd.json, line 2, column 1"};
  EXPECT_EQ(names(node), expected);

  const auto database = newDatabase();
  const auto result = copyAll(node, database);
  EXPECT_EQ(result.copied, 4);
  EXPECT_EQ(result.failed, 2);
  EXPECT_EQ(linesOf(result.notes),
            (std::vector<std::string>{"1 row without a value skipped: b, c0, c2",
                                      "integrated values of the product, by NFRC: b, c0, c2"}));
  EXPECT_EQ(rowsOf(*database->ADOConnection(),
                   "SELECT name, transmission_outdoor, transmission_solar_outdoor FROM (Pane INNER "
                   "JOIN Pane_spectral_data ON Pane.PaneID = Pane_spectral_data.PaneID) INNER JOIN "
                   "Pane_integrated_data ON Pane.PaneID = Pane_integrated_data.PaneID WHERE "
                   "name <> 'a.txt' ORDER BY Pane.PaneID"),
            "b|0.2|0.5 c0|0.3|0.5 c2|0.4|0.5");
}

TEST_F(ProductSourceTest, AProductHasTheAnglesOfItsBlocks) {
  folder.write("a.json", R"({"product_name": "a", "measured_data": {"spectral_data": {
      "unit": "Microns", "angle_block": [
        {"incidence_angle": 8, "wavelength_data": [{"w": 0.3, "tf": 0.5, "rf": 0, "rb": 0}]},
        {"incidence_angle": 60, "wavelength_data": [{"w": 0.3, "tf": 0.4, "rf": 0, "rb": 0}]}]}}})");
  const auto node = opener.openAny((folder.path() / "a.json").string());
  EXPECT_EQ(names(node), std::vector<std::string>{"a.json = a"});
  const auto database = newDatabase();
  EXPECT_EQ(copyAll(node, database).copied, 1);
  EXPECT_EQ(rowsOf(*database->ADOConnection(),
                   "SELECT angle, transmission_outdoor FROM Pane_spectral_data ORDER BY angle"),
            "8|0.5 60|0.4");
}

TEST_F(ProductSourceTest, ADatabaseGoesThroughProductsUnchanged) {
  const auto database = newDatabase();
  auto& dc = *database->ADOConnection();
  for (const std::int16_t angle : {0, 45}) {
    const auto pane = withSubstrate(makePane("Type 1.5 mm/grey", angle));
    pane->SpectralData()->Tf(1, 0.123456F + static_cast<float>(angle) / 1000);
    session.database.InsertPane(*pane, dc);
  }
  const auto panes = recordSet(database, commands::RecordKind::panes);
  const auto files =
      commands::exportRecords(session, selectAll(panes), {target(), false, ExportForm::json});
  EXPECT_EQ(files.files, (std::vector<std::string>{"Type 1.5 mm_grey_0deg.json",
                                                   "Type 1.5 mm_grey_45deg.json"}));
  const auto joined = commands::exportJoined(session, selectAll(panes), ExportForm::json);
  EXPECT_EQ(joined.dataSets, 2U);
  commands::writeJoined((folder.path() / "all.json").string(), joined.text, false);
  EXPECT_EQ(raisedBy([&] {
              commands::writeJoined((folder.path() / "all.json").string(), "", false);
            }).number,
            kInvalidCall);

  int number = 0;
  for (const std::string& source : {target(), (folder.path() / "all.json").string()}) {
    const auto back = newDatabase("back" + std::to_string(++number) + ".mdb");
    EXPECT_EQ(copyAll(opener.openAny(source), back).copied, 2)
        << ::testing::PrintToString(messages());
    const auto again =
        copyAll(opener.openAny(source), back, {.ifThere = commands::IfThere::replace});
    EXPECT_EQ(again.replaced, 2);
    for (const auto& note : again.notes.list())
      EXPECT_EQ(note.text.find("kept"), std::string::npos);
    // The reflectance of a substrate is nothing that is read from a database.
    for (const char* statement :
         {"SELECT * FROM Pane", "SELECT * FROM Pane_integrated_data", "SELECT * FROM Groups",
          "SELECT angle, wavelength, transmission_outdoor, reflection_outdoor, reflection_indoor, "
          "transmission_sub FROM Pane_spectral_data ORDER BY angle, wavelength"}) {
      EXPECT_EQ(rowsOf(*back->ADOConnection(), statement), rowsOf(dc, statement)) << statement;
    }
  }
}

TEST_F(ProductSourceTest, OfWhatIsJoinedABadPaneFailsByItself) {
  folder.write("good.txt", "SI Microns 4 1\n0.3 0.1 0.1 0.1\n");
  folder.write("percent.txt", "SI Microns 4 1\n0.3 83 8 8\n");
  const auto node = opener.openAny(folder.path().string());
  const auto joined = commands::exportJoined(session, selectAll(node), ExportForm::json);
  EXPECT_EQ(joined.failed, 1);
  EXPECT_EQ(joined.dataSets, 1U);
  EXPECT_NE(joined.text.find("good.txt"), std::string::npos) << joined.text;
  ASSERT_EQ(messages().size(), 1U);
  EXPECT_NE(messages().front().find("The record percent.txt could not be exported: This is no "
                                    "fraction. Values are between 0 and 1\npercent.txt, /physical"),
            std::string::npos)
      << messages().front();
}

TEST_F(ProductSourceTest, TablesHaveARowAWavelengthAndColumnsAPane) {
  folder.write("a.json", product("a", 0.25));
  folder.write("b.json", R"({"name": "b", "spectral_data": {"spectral_data": [
      {"wavelength": 2.005, "T": 0.5, "Tb": 0.625, "Rf": 0.1, "Rb": 1e-7},
      {"wavelength": 0.325, "T": 0.75, "Rf": 0.1, "Rb": 0.2}]}})");
  folder.write("c.json", R"({"product_name": "a", "measured_data": {"spectral_data": {
      "unit": "Nanometers", "angle_block": [{"incidence_angle": 0, "wavelength_data": [
        {"w": 325, "tf": 0.375, "rf": 0, "rb": 0}, {"w": 2005, "tf": 0.25, "rf": 0, "rb": 0}]}]}}})");
  const auto node = opener.openAny(folder.path().string());
  EXPECT_EQ(commands::exportJoined(session, select(node, {"a.json"}), ExportForm::csv).text,
            "wavelength (nm),a transmittance front (1),a transmittance back (1),"
            "a reflectance front (1),a reflectance back (1)\r\n300,0.25,0.25,0.1,0.2\r\n");
  const std::string all = commands::exportJoined(session, selectAll(node), ExportForm::csv).text;
  EXPECT_NE(all.find(",a (c.json) reflectance back (1)\r\n"
                     "300,0.25,0.25,0.1,0.2,,,,,,,,\r\n"
                     "325,,,,,0.75,0.75,0.1,0.2,0.375,0.375,0,0\r\n"
                     "2005,,,,,0.5,0.625,0.1,1e-07,0.25,0.25,0,0\r\n"),
            std::string::npos)
      << all;
  EXPECT_EQ(
      raisedBy([&] { commands::exportJoined(session, selectAll(node), ExportForm::text); }).number,
      kInvalidCall);
}

}  // namespace
}  // namespace orv::test
