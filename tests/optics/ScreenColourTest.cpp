#include <gmock/gmock.h>

#include "optics/ScreenColour.h"

namespace orv::optics {
namespace {

using testing::ElementsAre;

/// The corners of sRGB in CIELAB, as Lindbloom's calculator gives them for D65.
TEST(ScreenColourTest, FindsTheCornersOfTheScreen) {
  EXPECT_THAT(screenColour({100, 0, 0}), ElementsAre(255, 255, 255));
  EXPECT_THAT(screenColour({0, 0, 0}), ElementsAre(0, 0, 0));
  EXPECT_THAT(screenColour({53.241, 80.092, 67.203}), ElementsAre(255, 0, 0));
  EXPECT_THAT(screenColour({87.735, -86.183, 83.179}), ElementsAre(0, 255, 0));
  EXPECT_THAT(screenColour({32.297, 79.188, -107.86}), ElementsAre(0, 0, 255));
  EXPECT_THAT(screenColour({53.585, 0, 0}), ElementsAre(128, 128, 128));
  EXPECT_THAT(screenColour({2.7, 0, 0}), ElementsAre(10, 10, 10));  // 255 * 12.92 * 2.7 / 903.3
}

TEST(ScreenColourTest, TakesWhatNoScreenShowsToItsEdge) {
  EXPECT_THAT(screenColour({120, 0, 0}), ElementsAre(255, 255, 255));
  EXPECT_EQ(screenColour({60, -120, 0})[0], 0);
}

}  // namespace
}  // namespace orv::optics
