// What of a table a spectrum covers, and what a record says of its surfaces.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "optics/Coverage.h"
#include "optics/Surfaces.h"

namespace orv::optics {

namespace {

using Wavelengths = std::vector<double>;

/// Weights of 1 at every `step`, and a spectrum with points there.
std::vector<tables::Point> evenTable(double first, double last, double step) {
  std::vector<tables::Point> table;
  for (double at = first; at <= last; at += step) table.push_back({at, 1});
  return table;
}

TEST(Coverage, CountsWeightsBetweenPointsThatAreNotTooFarApart) {
  const std::vector<tables::Point> table{{300, 1}, {310, 2},  {320, 4},
                                         {400, 8}, {410, 16}, {1800, 1}};
  struct Case {
    Wavelengths at;
    const char* text;
  };
  const Case cases[] = {
      {{300, 310, 320, 400, 410, 1800}, "32 of 32; missing 320 to 400 nm and 410 to 1800 nm"},
      {{310, 400}, "10 of 14; missing 300 to 310 nm and 310 to 400 nm and 400 to 1800 nm"},
      {{300, 350, 410, 420}, "23 of 31; missing 350 to 410 nm and 420 to 1800 nm"},
      {{300, 350.02, 410},
       "17 of 31; missing 300 to 350.02 nm and 350.02 to 410 nm and 410 to "
       "1800 nm"},
      {{295, 305, 315, 325, 399.9, 499.9},
       "7 of 31; missing 325 to 399.9 nm and 399.9 to 499.9 nm and 499.9 to 1800 nm"},
      {{400}, "8 of 8; missing 300 to 400 nm and 400 to 1800 nm"},
      {{200, 299}, "0 of 0; missing 300 to 1800 nm"},
      {{1801, 1900}, "0 of 0; missing 300 to 1800 nm"},
  };
  for (const Case& c : cases) {
    const Coverage coverage = coverageOf(table, c.at);
    EXPECT_EQ(fmt::format("{} of {}; missing {}", 32 * coverage.covered, 32 * coverage.reached,
                          coverage.missing()),
              c.text);
  }
  const auto wide = [](double from, double to) {
    return coverageOf(evenTable(from, to, to - from), Wavelengths{from, to}).wideGaps.size() == 1;
  };
  EXPECT_TRUE(wide(399, 449.02) && wide(400, 500.02) && wide(999, 1099.02) && wide(1000, 1500.02));
  EXPECT_FALSE(wide(399, 449) || wide(400, 500) || wide(999, 1099) || wide(1000, 1500));
}

TEST(Coverage, TellsGapsThatAreUnusual) {
  const auto gaps = [](std::span<const tables::Point> table, const Wavelengths& at) {
    return told(coverageOf(table, at).gaps);
  };
  const auto fine = evenTable(400, 440, 1);
  EXPECT_EQ(gaps(fine, {400, 404, 408, 414, 418, 422, 426, 430, 434, 438, 442}), "");
  EXPECT_EQ(gaps(fine, {400, 404, 408, 414.02, 418, 422, 426, 430, 434, 438, 442}),
            "nothing between 408 and 414.02 nm");
  // Beyond either end of the table nothing is asked for.
  EXPECT_EQ(gaps(fine, {300, 390, 400, 410, 420, 430, 439, 500}), "");
  EXPECT_EQ(gaps(fine, {300, 390, 400, 410, 420, 430, 438.9, 500}),
            "nothing between 438.9 and 500 nm");
  EXPECT_EQ(gaps(fine, {300, 401, 410, 420, 430, 440, 500}), "nothing between 300 and 401 nm");
  // No wider than the table's own step, of those that it touches the widest.
  const std::vector<tables::Point> coarse{{400, 1}, {410, 1}, {450, 1}, {460, 1}};
  EXPECT_EQ(gaps(coarse, {400, 405, 445, 455, 460}), "");
  EXPECT_EQ(gaps(coarse, {400, 405, 445.02, 455, 460}), "nothing between 405 and 445.02 nm");
  EXPECT_EQ(gaps(coarse, {400, 410, 430, 450, 460}), "");
  EXPECT_EQ(gaps(evenTable(995, 1100, 5), {995, 1000, 1050, 1100}), "");
  EXPECT_EQ(gaps(evenTable(995, 1100, 5), {995, 1000, 1050.02, 1100}),
            "nothing between 1000 and 1050.02 nm");

  const Wavelengths growing{0, 1, 3, 6, 10, 15, 21, 28, 36};
  EXPECT_EQ(usualStep(growing, 1), 3);
  EXPECT_EQ(usualStep(growing, 3), 4);
  EXPECT_EQ(usualStep(growing, 4), 4);
  EXPECT_EQ(usualStep(growing, 5), 5);
  EXPECT_EQ(usualStep(growing, 8), 7);
}

TEST(Coverage, NamesTheFirstOfManyGaps) {
  const std::vector<Gap> gaps{{1, 2}, {3, 4}, {5, 6.5}, {7, 8}, {9, 10}};
  const std::string three = "nothing between 1 and 2 nm, 3 and 4 nm, 5 and 6.5 nm";
  EXPECT_EQ(told(gaps), three + ", and in 2 more gaps");
  EXPECT_EQ(told(std::span(gaps).first(3)), three);
  Coverage coverage{.tableBegin = 0,
                    .tableEnd = 9,
                    .spectrumBegin = 1,
                    .spectrumEnd = 9,
                    .gaps = {},
                    .wideGaps = {gaps.begin(), gaps.begin() + 3}};
  EXPECT_EQ(coverage.missing(), "0 to 1 nm and 1 to 2 nm and 3 to 4 nm and 5 to 6.5 nm");
  coverage.spectrumEnd = 8;
  EXPECT_EQ(coverage.missing(), "0 to 1 nm and 1 to 2 nm and 3 to 4 nm and 2 more ranges");
}

TEST(Surfaces, AreAsTheRecordSays) {
  using enum Coating;
  struct Case {
    std::int32_t type, side;
    Coating front, back;
  };
  const Case cases[] = {
      {kMonolithic, kSideNotSet, bare, bare},   {kMonolithic, kUnknownSide, bare, bare},
      {kCoated, kSideNotSet, unknown, unknown}, {kCoated, kUnknownSide, unknown, unknown},
      {kCoated, kNeitherSide, bare, bare},      {kCoated, kBothSides, coated, coated},
      {kMonolithic, kFrontSide, coated, bare},  {kMonolithic, kBackSide, bare, coated},
  };
  for (const Case& c : cases) {
    GlazingData pane;
    pane.GlazingType(c.type);
    pane.CoatedSide(c.side);
    EXPECT_EQ(surfacesOf(pane).front.coating, c.front) << c.type << " " << c.side;
    EXPECT_EQ(surfacesOf(pane).back.coating, c.back) << c.type << " " << c.side;
  }
  GlazingData pane;
  EXPECT_FALSE(surfacesOf(pane).front.emissivity || surfacesOf(pane).back.emissivity);
  pane.ef(0.84F);
  pane.eb(0);
  EXPECT_EQ(surfacesOf(pane).front.emissivity, 0.84);
  EXPECT_FALSE(surfacesOf(pane).back.emissivity);
  pane.ORV_Emissivity_front(0.123456789);
  pane.ORV_Emissivity_back(0.1F);
  EXPECT_EQ(surfacesOf(pane).front.emissivity, 0.123456789);
  EXPECT_EQ(surfacesOf(pane).back.emissivity, 0.1);
}

}  // namespace

}  // namespace orv::optics
