// Integrated values on their way into a database, and into one that has the pane already.
#include "commands/CommandsTest.h"
#include "commands/IntegrateRecords.h"
#include "commands/PasteRecords.h"
#include "model/Raised.h"

namespace orv::test {
namespace {

using commands::IntegratedRow;
using commands::IntegrationOptions;
using commands::PasteOptions;
using commands::RecordKind;
using commands::TextFileKind;
using optics::Standard;

/// A pane that is grey from `first` to `last`, in µm: T 0.5, Rf 0.25, Rb 0.125 everywhere.
std::string grey(const char* first, const char* last) {
  return "SI Microns 3 1\nTIR=0\nEmis= 0.84 0.84\n" + std::string(first) + " 0.5 0.25 0.125\n" +
         last + " 0.5 0.25 0.125\n";
}

class IntegrateTest : public CommandsTest {
 protected:
  commands::PasteResult copy(const Node& from, const PasteOptions& options = {}) {
    ui.inputs = {"Glass"};
    return commands::pasteRecords(session, selectAll(from), to, options);
  }

  std::vector<IntegratedRow> integrate(const Node& node, const IntegrationOptions& options = {}) {
    std::vector<IntegratedRow> rows;
    result = commands::integrateRecords(session, selectAll(node), options,
                                        [&](const IntegratedRow& row) { rows.push_back(row); });
    return rows;
  }

  Node panes() const { return recordSet(to, RecordKind::panes); }

  std::string stored() {
    return rowsOf(*to->ADOConnection(),
                  "SELECT PaneID, angle, transmission_solar_outdoor, transmission_solar_indoor, "
                  "reflection_solar_indoor, reflection_visual_outdoor, transmission_UV_indoor FROM "
                  "Pane_integrated_data ORDER BY PaneID, angle");
  }

  static std::vector<std::string> linesOf(const commands::Notes& notes) {
    std::vector<std::string> lines;
    for (const auto& note : notes.list()) lines.push_back(note.line());
    return lines;
  }

  Node to = newDatabase("to.mdb");
  commands::IntegrationResult result;
};

TEST_F(IntegrateTest, ACopyComputesWhatATextDoesNotGive) {
  const auto files = texts(TextFileKind::panes, {{"ir.txt", grey("2.5", "40")},
                                                 {"visible.txt", grey("0.38", "0.78")},
                                                 {"whole.txt", grey("0.28", "2.5")}});
  const auto first = copy(files);
  EXPECT_EQ(first.summary(), "3 records copied. Integrated values of 2 panes computed by EN 410.");
  EXPECT_EQ(stored(), "1|0|0|0|0|0|0 2|0|0|0|0|0.25|0 3|0|0.5|0.5|0.125|0.25|0.5");
  EXPECT_EQ(linesOf(first.zeros),
            (std::vector<std::string>{"integrated values: ir.txt", "solar values: visible.txt",
                                      "ultraviolet values: visible.txt"}));
  const auto again =
      copy(files, {.ifThere = commands::IfThere::replace, .integrateBy = Standard::iso9050});
  EXPECT_EQ(again.summary(),
            "0 records copied, 3 replaced. Integrated values of 2 panes computed by ISO 9050.");
  const auto plain =
      copy(files, {.ifThere = commands::IfThere::replace, .integrateBy = std::nullopt});
  EXPECT_EQ(plain.summary(), "0 records copied, 3 replaced.");
  EXPECT_EQ(stored(), "1|0|0|0|0|0|0 2|0|0|0|0|0|0 3|0|0|0|0|0|0");
}

TEST_F(IntegrateTest, ACopyKeepsTheValuesOfADatabaseAndComputesWhereItHasNoRow) {
  const auto from = newDatabase("from.mdb");
  auto& dc = *from->ADOConnection();
  session.database.InsertPane(*makePane("known"), dc);
  session.database.InsertPane(*makePane("rowless", 60), dc);
  for (auto rows = dc.openRecordset("SELECT * FROM Pane_integrated_data WHERE PaneID = 2",
                                    store::CursorType::keyset, store::LockType::optimistic);
       !rows->eof(); rows->moveNext()) {
    rows->deleteRow();
  }
  const auto source = recordSet(from, RecordKind::panes);
  EXPECT_EQ(copy(source, {.integrateBy = std::nullopt}).withoutData, 1);
  const auto computed = copy(source, {.ifThere = commands::IfThere::skip});
  EXPECT_EQ(computed.summary(),
            "1 record copied, 1 skipped. Integrated values of 1 pane computed by EN 410.");
  // The spectrum ends at 700 nm: no solar values, reflectance as at 555 nm, transmittance of the
  // ultraviolet between 300 and 380 nm.
  const std::string rows = stored();
  EXPECT_TRUE(rows.starts_with("1|0|0.13|0.14|0.12|0.15|0.22 2|60|0|0|0|0.12")) << rows;
  EXPECT_EQ(rows.substr(rows.rfind('|') + 1, 4), "0.50");
}

TEST_F(IntegrateTest, ValuesAreStoredWhereTheyAreMissingOrEverywhereButInFrozenPanes) {
  auto& dc = *to->ADOConnection();
  const auto insert = [&](const std::string& name, std::int16_t angle, float transmittance) {
    auto pane = makePane(name, angle);
    if (transmittance == 0) {
      for (const auto& column : kIntegratedColumns) (pane.get()->*column.pane)(0);
    }
    auto spectrum = std::make_shared<SpectralData>();
    spectrum->Allocate(1);
    spectrum->wl(0, 0.28F);
    spectrum->wl(1, 2.5F);
    for (const std::int32_t i : {0, 1}) {
      spectrum->Tf(i, 0.5F);
      spectrum->Tb(i, 0.5F);
      spectrum->Rf(i, 0.25F);
      spectrum->Rb(i, 0.125F);
    }
    pane->SpectralData(spectrum);
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
  EXPECT_EQ(computed[2].note(), "nothing between 280 and 2500 nm");
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

TEST_F(IntegrateTest, WhatCannotBeIntegratedOrStoredIsSaid) {
  const auto files =
      texts(TextFileKind::panes, {{"bad.txt", "no pane\n"}, {"visible.txt", grey("0.38", "0.78")}});
  const auto rows = integrate(files);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_FALSE(rows[0].failure.empty());
  EXPECT_FALSE(rows[1].isWhole());
  EXPECT_EQ(result.incomplete, 2);
  EXPECT_NE(raisedBy([&] { integrate(files, {.stores = true}); }).description.find("version 3.0.0"),
            std::string::npos);
  EXPECT_NE(raisedBy([&] {
              integrate(recordSet(to, RecordKind::frames));
            }).description.find("Only panes"),
            std::string::npos);
}

}  // namespace
}  // namespace orv::test
