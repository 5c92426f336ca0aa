// The stores of spectra that comparisons and searches for duplicates keep.
#include <gtest/gtest.h>

#include "commands/NearSpectra.h"
#include "commands/compare/CurveRows.h"

namespace orv::commands {
namespace {

TEST(NearSpectra, AreThoseOfAllCellsThatTouchAndOfTheSamePlace) {
  constexpr double kTolerance = 0.01;
  const auto isFound = [](const NearSpectra<int, int>& near, int place) {
    return near.find(place, {0.3, 0.5, 0.7}, [](int item) { return item == 7; });
  };
  for (int cell = 0; cell < 125; ++cell) {
    const std::array<int, 3> steps = {cell / 25 - 2, cell / 5 % 5 - 2, cell % 5 - 2};
    CurveMeans means = {0.3, 0.5, 0.7};
    bool touches = true;
    for (std::size_t i = 0; i < means.size(); ++i) {
      means[i] += steps[i] * kTolerance;
      touches = touches && std::abs(steps[i]) < 2;
    }
    NearSpectra<int, int> near(kTolerance);
    near.add(1, {0.3, 0.5, 0.7}, 6);
    near.add(1, means, 7);
    EXPECT_EQ(isFound(near, 1), touches) << cell;
    EXPECT_FALSE(isFound(near, 2));
    near.remove(1, means, 7);
    EXPECT_FALSE(isFound(near, 1));
  }
}

/// So many points that measurements are closed to save room, and one is opened again.
TEST(CurveRows, GivesMeasurementsThatComeInPartsByAscendingWavelengths) {
  compare::Grids grids;
  compare::CurveRows rows(grids, {true, false});
  const auto add = [&](const compare::CurveKey& key, double wavelength, double a, double b) {
    rows.begin(key, wavelength);
    rows.add(0, a);
    rows.add(1, b);
  };
  const compare::CurveKey parted{.record = 1, .angle = 30.0, .direction = 2};
  add(parted, 500, 0.1, 0.2);
  add(parted, 400, 0, 0.4);
  constexpr int kMany = (1 << 22) + 1;
  for (int i = 0; i < kMany; ++i) add({.record = 0, .angle = {}, .direction = {}}, 300 + i, 0, 0);
  add(parted, 450, 0.5, 0.6);
  add({.record = 1, .angle = 30.0, .direction = 1}, 450, 0.7, 0.8);
  add(parted, 350, 0.9, 0);

  std::vector<compare::Record> records(2);
  rows.giveTo(records);
  ASSERT_EQ(records[0].curves.size(), 1U);
  EXPECT_EQ(records[0].curves[0].angle, std::nullopt);
  EXPECT_EQ(records[0].curves[0].grid->size(), kMany);
  ASSERT_EQ(records[1].curves.size(), 2U);
  EXPECT_EQ(records[1].curves[0].direction, 1);
  const compare::Curves& curves = records[1].curves[1];
  EXPECT_EQ(curves.angle, 30.0);
  EXPECT_EQ(*curves.grid, (std::vector<double>{350, 400, 450, 500}));
  const std::vector<std::vector<double>> expected{{0.9F, 0, 0.5F, 0.1F}, {0, 0.4, 0.6, 0.2}};
  for (std::size_t i = 0; i < 8; ++i) {
    EXPECT_EQ(curves.values[i / 4][i % 4], expected[i / 4][i % 4]) << i;
  }
}

}  // namespace
}  // namespace orv::commands
