// Integrated values on their way into a database, and into one that has the pane already.
#include "commands/CommandsTest.h"
#include "commands/IntegrateRecords.h"

namespace orv::test {
namespace {

using commands::IntegratedRow;
using optics::Standard;

/// From 280 to 2500 nm T 0.5, Rf 0.25 and Rb 0.125 everywhere.
std::shared_ptr<SpectralData> greySpectrum() {
  std::vector<std::array<float, 5>> points;
  for (int i = 28; i <= 250; ++i) {
    points.push_back({static_cast<float>(i) / 100, 0.5F, 0.5F, 0.25F, 0.125F});
  }
  return spectrumOf(points);
}

class IntegrateTest : public CommandsTest {
 protected:
  commands::PasteResult copy(const Node& from, const commands::PasteOptions& options = {}) {
    return copyAll(from, to, options);
  }

  std::vector<IntegratedRow> integrate(const Node& node,
                                       const commands::IntegrationOptions& options = {}) {
    std::vector<IntegratedRow> rows;
    result = commands::integrateRecords(session, selectAll(node), options,
                                        [&](const IntegratedRow& row) { rows.push_back(row); });
    return rows;
  }

  Node panes() const { return recordSet(to, commands::RecordKind::panes); }

  std::string stored() {
    return rowsOf(*to->ADOConnection(),
                  "SELECT PaneID, angle, transmission_solar_outdoor, transmission_solar_indoor, "
                  "reflection_solar_indoor, reflection_visual_outdoor, transmission_UV_indoor FROM "
                  "Pane_integrated_data ORDER BY PaneID, angle");
  }

  Node to = newDatabase("to.mdb");
  commands::IntegrationResult result;
};

TEST_F(IntegrateTest, ValuesAreStoredWhereTheyAreMissingOrEverywhereButInFrozenPanes) {
  auto& dc = *to->ADOConnection();
  const auto insert = [&](const std::string& name, std::int16_t angle, float transmittance) {
    auto pane = makePane(name, angle);
    if (transmittance == 0) {
      for (const auto& column : kIntegratedColumns) (pane.get()->*column.pane)(0);
    }
    pane->SpectralData(greySpectrum());
    pane->ORV_Frozen(name == "frozen");
    session.database.InsertPane(*pane, dc);
  };
  insert("known", 0, 0.13F);
  insert("zero", 0, 0);
  insert("zero", 60, 0);
  insert("frozen", 0, 0);
  const std::string old = "0.13|0.14|0.12|0.15|0.22";
  const std::string fresh = "0.5|0.5|0.125|0.25|0.5";
  const std::string none = "0|0|0|0|0";

  const auto computed = integrate(panes());
  ASSERT_EQ(computed.size(), 4U);
  EXPECT_EQ(*computed[0].integration["Rb_sol"], 0.125);
  EXPECT_NEAR(computed[0].stored.at("Tb_vis"), 0.18, 1e-7);
  EXPECT_TRUE(computed[1].stored.empty());
  EXPECT_EQ(computed[2].angle, 60);
  EXPECT_TRUE(computed[2].note().starts_with("nothing between 280 and 290 nm, "));
  EXPECT_EQ(stored(), "1|0|" + old + " 2|0|" + none + " 2|60|" + none + " 3|0|" + none);

  const auto rehearsed = integrate(panes(), {.rehearses = true});
  EXPECT_EQ(rehearsed[2].storing, commands::Storing::written);
  EXPECT_EQ(rehearsed[3].storing, commands::Storing::isFrozen);
  EXPECT_EQ(stored(), "1|0|" + old + " 2|0|" + none + " 2|60|" + none + " 3|0|" + none);

  integrate(panes(), {.angle = std::int16_t{60}, .stores = true, .onlyMissing = true});
  EXPECT_EQ(stored(), "1|0|" + old + " 2|0|" + none + " 2|60|" + fresh + " 3|0|" + none);
  integrate(panes(), {.stores = true, .onlyMissing = true});
  EXPECT_EQ(stored(), "1|0|" + old + " 2|0|" + fresh + " 2|60|" + fresh + " 3|0|" + none);
  EXPECT_EQ(
      result.summary(Standard::en410),
      "1 row of integrated values written by EN 410, 2 left with the values that they have, 1 "
      "left alone since the pane is frozen.");
  const auto written = integrate(panes(), {.stores = true, .frozenToo = true});
  EXPECT_EQ(stored(), "1|0|" + fresh + " 2|0|" + fresh + " 2|60|" + fresh + " 3|0|" + fresh);
  EXPECT_NEAR(written[0].stored.at("Tf_sol"), 0.13, 1e-7) << "what was there";
}

TEST_F(IntegrateTest, ACopyFillsTheValuesThatAProductDoesNotGiveAndTellsGaps) {
  std::string rows;
  for (int at = 300; at <= 2500; at += 5) {
    if (at > 600 && at < 640) continue;
    rows += fmt::format(R"({}{{"wavelength": {}, "T": 0.5, "Rf": 0.25, "Rb": 0.125}})",
                        rows.empty() ? "" : ", ", at / 1000.0);
  }
  folder.write("a.json", R"({"name": "a", "measured_data": {"thickness": 4, "conductivity": 1},
      "integrated_results_summary": [{"calculation_standard_name": "NFRC", "tfsol": 0.75,
        "rfvis": 0.375}], "spectral_data": {"spectral_data": [)" +
                             rows + "]}}");
  const auto node = opener.openAny(folder / "a.json");
  EXPECT_EQ(copy(node, {.integrateBy = std::nullopt}).summary(), "1 record copied.");
  EXPECT_EQ(stored(), "1|0|0.75|0.75|0|0.375|0");
  const auto filled = copy(node, {.ifThere = commands::IfThere::replace});
  EXPECT_EQ(filled.summary(),
            "0 records copied, 1 replaced. Integrated values of 1 pane computed by EN 410.");
  EXPECT_EQ(stored(), "1|0|0.75|0.75|0.125|0.375|0.5");
  EXPECT_THAT(linesOf(filled.notes), ::testing::Contains("nothing between 600 and 640 nm: a"));
}

TEST_F(IntegrateTest, TheValuesOfAPaneAreStoredAllOrNone) {
  to = changedDatabase("one-row-a-pane.mdb", [](store::TableInfo& table) {
    if (table.name != "Pane_integrated_data") return;
    table.indexes.push_back({.name = "One", .columns = {{"PaneID"}}, .unique = true});
  });
  auto pane = makePane("pane");
  pane->SpectralData(greySpectrum());
  session.database.InsertPane(*pane, *to->ADOConnection());
  for (double at = 300; at <= 800; at += 50) {
    changeTable(*to->ADOConnection(),
                fmt::format("+Pane_spectral_data PaneID=1, angle=60, wavelength={}, "
                            "transmission_outdoor=0.25, reflection_outdoor=0.125, "
                            "reflection_indoor=0.0625",
                            at));
  }
  const auto rows = integrate(panes(), {.stores = true});
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_NEAR(*rows[1].integration["Tf_vis"], 0.25, 1e-12);
  for (const IntegratedRow& row : rows) EXPECT_EQ(row.storing, commands::Storing::failed);
  EXPECT_EQ(result.written, 0);
  EXPECT_EQ(result.incomplete, 2);
  const auto missing = integrate(panes(), {.stores = true, .onlyMissing = true});
  EXPECT_EQ(missing[0].storing, commands::Storing::isThere);
  EXPECT_EQ(missing[1].storing, commands::Storing::failed);
  EXPECT_EQ(stored(), "1|0|0.13|0.14|0.12|0.15|0.22");
}

/// Makers compute by NFRC 300, some with a newer table of the sun. One product is there twice under
/// one name; a blind and the table of expected values are no panes.
TEST_F(IntegrateTest, ProductsOfMakersKeepValuesThatTheirSpectraHave) {
  ORV_NEEDS_CORPUS();
  const auto products = opener.openAny((corpusFolder() / "products").string());
  EXPECT_EQ(copy(products, {.integrateBy = Standard::nfrc300}).copied, 6);
  std::size_t compared = 0;
  for (const auto& row : integrate(panes(), {.standard = Standard::nfrc300})) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.note(), "");
    for (const auto& [name, stored] : row.stored) {
      EXPECT_NEAR(stored, *row.integration[name], name.ends_with("_sol") ? 1e-4 : 2e-6) << name;
      ++compared;
    }
  }
  EXPECT_EQ(compared, 6U * kIntegratedColumns.size());
}

}  // namespace
}  // namespace orv::test
