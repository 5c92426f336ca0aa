// What reports say, whole.
#include <limits>
#include <stdexcept>
#include <tuple>

#include "commands/CellText.h"
#include "commands/ColumnTitle.h"
#include "commands/CommandsTest.h"
#include "commands/CompactDatabase.h"
#include "commands/ErrorText.h"
#include "commands/ExportLosses.h"
#include "commands/IntegrateRecords.h"
#include "commands/SpectraCsv.h"
#include "errors/Error.h"
#include "store/StoreError.h"

namespace orv::commands {
namespace {

TEST(ReportTexts, TellWhatARepairHasSavedAndLost) {
  const store::CompactReport report{.sizeBefore = 999'499,
                                    .sizeAfter = 1'000'000,
                                    .tables = 1,
                                    .rows = 2,
                                    .longValues = 3,
                                    .indexes = 1,
                                    .salvaged = {{.table = "Pane",
                                                  .rowsSaved = 1,
                                                  .rowsLost = 2,
                                                  .pagesLost = 1,
                                                  .valuesCut = 1,
                                                  .places = {"page 3, row 4: too short"},
                                                  .lost = {"index 'name'"},
                                                  .notes = {"it is of former days"}},
                                                 {.table = "Frame", .pagesLost = 2, .valuesCut = 3},
                                                 {.table = "Groups", .rowsSaved = 5}},
                                    .lost = {"query 'q'"},
                                    .notes = {"2 pages cannot be read"}};
  const std::vector<std::string> expected = {
      "Lost: query 'q'.",
      "Table 'Pane': 1 row saved, 2 lost, 1 page unreadable, 1 memo or picture cut short.",
      "  Lost: index 'name'.",
      "  page 3, row 4: too short.",
      "  Remark: it is of former days.",
      "Table 'Frame': 0 rows saved, 0 lost, 2 pages unreadable, 3 memos or pictures cut short.",
      "Table 'Groups': 5 rows saved, 0 lost.",
      "Remark: 2 pages cannot be read."};
  EXPECT_EQ(describeSalvage(report), expected);
  EXPECT_EQ(describe(report), "999 kB to 1.0 MB: 1 table, 2 rows, 1 index");
  EXPECT_FALSE(report.isWhole());
  for (const store::SalvagedTable& lossy : {store::SalvagedTable{.table = "T", .rowsLost = 1},
                                            {.table = "T", .pagesLost = 1},
                                            {.table = "T", .valuesCut = 1},
                                            {.table = "T", .lost = {"x"}}}) {
    EXPECT_FALSE(lossy.isWhole());
  }
  EXPECT_TRUE((store::SalvagedTable{.table = "T", .rowsSaved = 1, .places = {"x"}, .notes = {"y"}})
                  .isWhole());
}

TEST(ReportTexts, OfIntegrationsNameWhatWasLeft) {
  const auto summary = [](IntegrationResult result) {
    return result.summary(optics::Standard::en410);
  };
  EXPECT_EQ(summary({.written = 1}), "1 row of integrated values written by EN 410.");
  EXPECT_EQ(
      summary({.cancelled = true, .incomplete = 3, .written = 2, .frozen = 4, .present = 5}),
      "2 rows of integrated values written by EN 410, 5 left with the values that they have, "
      "4 left alone since the pane is frozen, 3 with too little of a spectrum or failed, then "
      "cancelled.");
}

TEST(ReportTexts, OfColumnsAreTheWordsOfTheirNames) {
  for (const auto& [column, title] :
       std::map<std::string, std::string>{{"slatWidth", "Slat width"},
                                          {"meanUV", "Mean UV"},
                                          {"theURL_of", "The URL of"},
                                          {"maker_id", "Maker ID"},
                                          {"aB", "A B"},
                                          {"GLASS", "GLASS"},
                                          {"FILENAME", "File name"}}) {
    EXPECT_EQ(columnTitle(column).text, title);
  }
}

TEST(ReportTexts, OfCopiesCountWhatBecameOfRecords) {
  PasteResult all{.copied = 2,
                  .replaced = 3,
                  .skipped = 4,
                  .partly = 5,
                  .failed = 6,
                  .withoutData = 7,
                  .integrated = 1,
                  .standard = "EN 410"};
  EXPECT_EQ(all.summary(),
            "2 records copied, 3 replaced, 4 skipped, 5 in part, 6 failed, 7 without data at any "
            "angle. Integrated values of 1 pane computed by EN 410.");
  const PasteResult one{.cancelled = true, .copied = 1};
  EXPECT_EQ(one.summary(true), "1 record copied, 0 failed, then cancelled.");
  PasteResult sum = one;
  all.notes.add("lost", "a");
  for (const PasteResult& each : {all, all}) sum.add(each);
  EXPECT_EQ(
      sum.summary(),
      "5 records copied, 6 replaced, 8 skipped, 10 in part, 12 failed, 14 without data at any "
      "angle, then cancelled. Integrated values of 2 panes computed by EN 410.");
  sum.notes.add("lost", "b");
  sum.notes.add("gone", "b");
  EXPECT_EQ(sum.notes.counts(), "lost (2), gone (1)");
  EXPECT_EQ(sum.notes.list().front().line(), "lost: a, b");
  EXPECT_EQ(sum.notes.list().front().line(1), "lost: a and 1 more");
}

TEST(ReportTexts, OfNumbersAreAsShortAsTheyCanBeRead) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const auto& [number, digits, text] : std::vector<std::tuple<double, int, const char*>>{
           {0.0001, 3, "0.0001"},
           {0.00001234, 3, "1.23e-05"},
           {9999999, 3, "9999999"},
           {1e7, 3, "1e+07"},
           {123456.7, 3, "123457"},
           {1.0 / 3, 3, "0.333"},
           {-0.0004, 1, "-0.0004"},
           {0.5, 3, "0.5"},
           {99.96, 3, "100"},
           {1.0 / 3, kAllDigits, "0.3333333333333333"},
           {-0.0, 3, "0"},
           {kInfinity, 3, "inf"}}) {
    EXPECT_EQ(numberText(number, digits), text);
  }
}

TEST(ReportTexts, OfExportsNameWhatNoKeyHolds) {
  using Losses = std::vector<std::string>;
  const auto lossesOf = [](const std::function<void(GlazingData&)>& set) {
    GlazingData pane;
    set(pane);
    return exportLossesOf(pane);
  };
  EXPECT_EQ(lossesOf([](auto& p) { p.LaminateFilename("l.txt"); }), Losses{"laminate"});
  EXPECT_EQ(lossesOf([](auto& p) { p.LaminateMaterial("PVB"); }), Losses{"laminate"});
  EXPECT_EQ(lossesOf([](auto& p) { p.group("Demo"); }), Losses{"group"});
  EXPECT_EQ(lossesOf([](auto& p) { p.group("Unknown"); }), Losses());
  EXPECT_EQ(lossesOf([](auto& p) { p.group("N/A"); }), Losses());
  EXPECT_EQ(lossesOf([](auto& p) { p.IGDBChecksumDate(Date()); }),
            Losses{"date of the IGDB checksum"});
  EXPECT_EQ(lossesOf([](auto& p) { p.description("a } b"); }), Losses{"braces of the description"});
  EXPECT_EQ(lossesOf([](auto& p) { p.SubstrateReference(std::make_shared<GlazingData>()); }),
            Losses());
}

TEST(ReportTexts, OfErrorsAreTheirDescriptionsElseTheirSourcesElseThoseOfTheirNumbers) {
  EXPECT_EQ(describe(Error(7, "told", "from", "there")), "told\nthere");
  EXPECT_EQ(describe(Error(7, "", "from", "there")), "from\nthere");
  EXPECT_EQ(describe(Error(kOverflow, "", "", "there")), "Overflow\nthere");
  EXPECT_EQ(describe(Error(kInvalidCall)), "Invalid procedure call or argument");
  EXPECT_EQ(describe(Error(kSubscriptOutOfRange)), "Subscript out of range");
  EXPECT_EQ(describe(Error(77)), "Error 77");
  EXPECT_EQ(describe(std::runtime_error("plain")), "plain");
  EXPECT_TRUE(isDamage(Error(store::kCorruptFile)));
  EXPECT_FALSE(isDamage(Error(kOverflow)));
  EXPECT_FALSE(isDamage(std::runtime_error("plain")));
}

TEST(ReportTexts, OfSpectraHaveALineForEachWavelength) {
  using test::spectrumOf;
  EXPECT_EQ(spectraCsv({{"a,\"b\"", spectrumOf({{0.5F, 0.25F, 0.375F, 0.5F, 0.625F},
                                                {0.3F, 0.125F, 0, 1, 0.75F},
                                                {0.5F, 0.0625F, 0.875F, 0.9375F, 0.03125F}})},
                        {"", spectrumOf({{0.3000004F, 0.1F, 0.2F, 0.3F, 0.4F}})},
                        {"none", nullptr}}),
            "wavelength (nm),\"a,\"\"b\"\" transmittance front (1)\",\"a,\"\"b\"\" transmittance "
            "back (1)\",\"a,\"\"b\"\" reflectance front (1)\",\"a,\"\"b\"\" reflectance back (1)\","
            "transmittance front (1),transmittance back (1),reflectance front (1),"
            "reflectance back (1),"
            "none transmittance front (1),none transmittance back (1),none reflectance front (1),"
            "none reflectance back (1)\r\n"
            "300,0.125,0,1,0.75,0.1,0.2,0.3,0.4,,,,\r\n"
            "500,0.25,0.375,0.5,0.625,,,,,,,,\r\n"
            "500,0.0625,0.875,0.9375,0.03125,,,,,,,,\r\n");
}

}  // namespace
}  // namespace orv::commands
