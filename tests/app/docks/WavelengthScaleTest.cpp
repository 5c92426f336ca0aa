#include <gmock/gmock.h>

#include <QStringList>

#include "app/docks/spectra/WavelengthScale.h"

namespace orv::app {
namespace {

QStringList labels(const WavelengthScale& scale, double low, double high, int count) {
  QStringList labels;
  for (const AxisTick& tick : scale.ticks(low, high, count)) labels << tick.label;
  return labels;
}

TEST(WavelengthScaleTest, LabelsEvenScalesAtRoundSteps) {
  const WavelengthScale nanometres{kNanometers, false};
  EXPECT_EQ(labels(nanometres, 0.3, 2.5, 5), (QStringList{"500", "1000", "1500", "2000", "2500"}));
  const WavelengthScale microns{kMicrons, false};
  EXPECT_EQ(labels(microns, 0.3, 0.9, 7),
            (QStringList{"0.3", "0.4", "0.5", "0.6", "0.7", "0.8", "0.9"}));
  EXPECT_EQ(microns.wavelength(microns.position(0.55)), 0.55);
}

TEST(WavelengthScaleTest, LabelsLogarithmicScalesBetweenThePowersOfTenToo) {
  const WavelengthScale scale{kMicrons, true};
  EXPECT_EQ(labels(scale, 0.3, 25, 10),
            (QStringList{"0.3", "0.5", "0.7", "1", "2", "3", "5", "7", "10", "20"}));
  EXPECT_EQ(labels(scale, 0.3, 25, 6), (QStringList{"0.5", "1", "2", "5", "10", "20"}));
  EXPECT_EQ(labels(scale, 0.3, 25, 4), (QStringList{"0.3", "1", "3", "10"}));
  EXPECT_EQ(labels(scale, 0.3, 25, 2), (QStringList{"1", "10"}));
  // Zoomed in, the steps are even but the places are not.
  const auto ticks = scale.ticks(1, 2, 5);
  ASSERT_EQ(ticks.size(), 6U);
  EXPECT_EQ(ticks[1].label, "1.2");
  EXPECT_NEAR(ticks[1].position, 0.0792, 1e-4);
  EXPECT_NEAR(scale.wavelength(ticks[1].position), 1.2, 1e-12);
}

TEST(WavelengthScaleTest, WritesFourDigitsInTheUnitAndNoTicksWithoutALength) {
  EXPECT_EQ((WavelengthScale{kMicrons, false}.text(0.55)), "0.5500");
  EXPECT_EQ((WavelengthScale{kNanometers, false}.text(0.55)), "550.0");
  EXPECT_EQ((WavelengthScale{kNanometers, true}.text(12.3456)), "12346");
  EXPECT_TRUE(labels({kMicrons, false}, 1, 1, 5).empty());
  EXPECT_TRUE(labels({kMicrons, true}, 2, 1, 5).empty());
}

}  // namespace
}  // namespace orv::app
