// What of a table a spectrum covers, and what a record says of its surfaces.
#include <fmt/format.h>

#include "optics/Coverage.h"
#include "optics/Surfaces.h"
#include "support/CaseFile.h"
#include "support/ReadFile.h"

namespace orv::optics {

namespace {

/// What spectra of points at some wavelengths cover of a table, and where they have gaps:
///
///   weights 300 1 310 2    a table of weights at wavelengths
///   even 400 440 1         one of 1 at each step
///   at 300 310 320         a spectrum
std::vector<std::string> coverages(const std::vector<std::string>& statements) {
  std::vector<tables::Point> table;
  double sum = 0;
  std::vector<std::string> lines;
  for (const std::string& statement : statements) {
    std::istringstream words(statement);
    std::string what;
    words >> what;
    const std::vector<double> n(std::istream_iterator<double>(words), {});
    if (what == "even") {
      for (double at = n.at(0); at <= n.at(1); at += n.at(2), ++sum) table.push_back({at, 1});
    } else if (what == "weights") {
      for (std::size_t i = 0; i < n.size(); sum += n.at(i + 1), i += 2) {
        table.push_back({n[i], n.at(i + 1)});
      }
    } else {
      const Coverage found = coverageOf(table, n);
      lines.push_back(fmt::format("{:.6g} of {:.6g}; missing [{}]; gaps [{}]", sum * found.covered,
                                  sum * found.reached, found.missing(), told(found.gaps)));
    }
  }
  return lines;
}

TEST(Coverage, CountsWeightsBetweenPointsThatAreNotTooFarApart) {
  const std::string expected = test::readFile(ORV_SOURCE_DIR "/tests/optics/coverages.txt");
  EXPECT_EQ(test::retold(expected, coverages), expected);
}

TEST(Coverage, GoesByTheStepsAroundAGap) {
  const std::vector<double> growing{0, 1, 3, 6, 10, 15, 21, 28, 36};
  std::vector<double> steps;
  for (const std::size_t right : {1U, 2U, 3U, 4U, 5U, 8U})
    steps.push_back(usualStep(growing, right));
  EXPECT_EQ(steps, (std::vector<double>{3, 3, 4, 4, 5, 7}));
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
