#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "model/Raised.h"
#include "model/SpectralData.h"

namespace orv {

namespace {

using ::testing::ElementsAre;

SpectralData spectrumEndingAt(float last, std::int32_t unit) {
  SpectralData spectrum;
  spectrum.WavelengthUnit(unit);
  spectrum.Allocate(1);
  spectrum.wl(1, last);
  return spectrum;
}

TEST(SpectralData, CountsItsPoints) {
  SpectralData spectrum;
  EXPECT_EQ(test::raisedBy([&] { spectrum.count(); }).number, kSubscriptOutOfRange);
  EXPECT_EQ(test::raisedBy([&] { spectrum.ShallowClone(); }).number, kSubscriptOutOfRange);
  EXPECT_EQ(test::raisedBy([&] { spectrum.Allocate(-1); }).number, kSubscriptOutOfRange);
  spectrum.Allocate(0);
  EXPECT_EQ(spectrum.count(), 1);
  spectrum.Tf(0, 0.5F);
  spectrum.Allocate(4);
  EXPECT_EQ(spectrum.count(), 5);
  EXPECT_EQ(spectrum.Tf(0), 0.0F);
}

TEST(SpectralData, RefusesNegativeValuesAndKeepsTheOld) {
  SpectralData spectrum;
  spectrum.Allocate(0);
  spectrum.wl(0, 0.3F);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(test::raisedBy([&] { spectrum.wl(0, -1); }).number, kInvalidCall);
  EXPECT_EQ(test::raisedBy([&] { spectrum.Rb(0, nan); }).number, kInvalidCall);
  EXPECT_EQ(spectrum.wl(0), 0.3F);
  spectrum.Rf(0, 1.5F);  // above 1 is for others to judge
  EXPECT_EQ(spectrum.Rf(0), 1.5F);
}

TEST(SpectralData, ConvertsWavelengthsBetweenKnownUnits) {
  const SpectralData microns = spectrumEndingAt(0.3F, kMicrons);
  EXPECT_FLOAT_EQ(microns.ConvertedWl(1, kNanometers), 300);
  EXPECT_EQ(microns.ConvertedWl(1, kMicrons), 0.3F);
  EXPECT_EQ(microns.ConvertedWl(1, 7), 0.3F);
  EXPECT_FLOAT_EQ(spectrumEndingAt(300, kNanometers).ConvertedWl(1, kMicrons), 0.3F);
  const SpectralData huge = spectrumEndingAt(1e38F, kMicrons);
  EXPECT_EQ(test::raisedBy([&] { (void)huge.ConvertedWl(1, kNanometers); }).number, kOverflow);
}

TEST(SpectralData, ReachesTheInfraredFromFiveMicrons) {
  EXPECT_FALSE(spectrumEndingAt(2500, kNanometers).HasIRData());
  EXPECT_TRUE(spectrumEndingAt(5000, kNanometers).HasIRData());
  EXPECT_FALSE(spectrumEndingAt(4.999F, kMicrons).HasIRData());
  EXPECT_TRUE(spectrumEndingAt(25, kMicrons).HasIRData());
}

TEST(SpectralData, CopiesItsPoints) {
  SpectralData spectrum = spectrumEndingAt(400, kNanometers);
  spectrum.Tf(1, 0.1F);
  spectrum.Tb(1, 0.2F);
  spectrum.Rf(1, 0.3F);
  spectrum.Rb(1, 0.4F);
  std::array<double, 2> tf{}, tb{}, rf{}, rb{};
  std::array<double, 3> wl{};
  spectrum.GetDataArraysAsDoubles(kMicrons, std::span(wl).first(2), tf, tb, rf, rb);
  EXPECT_THAT((std::vector{wl[1], tf[1], tb[1], rf[1], rb[1], wl[2]}),
              ElementsAre(0.4, 0.1F, 0.2F, 0.3F, 0.4F, 0));
  std::array<float, 2> tf32{}, tb32{}, rf32{}, rb32{};
  std::array<float, 3> wl32{};
  spectrum.GetDataArrays(kMicrons, std::span(wl32).first(2), tf32, tb32, rf32, rb32);
  EXPECT_THAT((std::vector{wl32[1], tf32[1], tb32[1], rf32[1], rb32[1], wl32[2]}),
              ElementsAre(0.4F, 0.1F, 0.2F, 0.3F, 0.4F, 0));

  const auto clone = spectrum.ShallowClone();
  spectrum.Rb(1, 0.9F);
  EXPECT_EQ(clone->WavelengthUnit(), kNanometers);
  EXPECT_EQ(clone->wl(1), 400);
  EXPECT_EQ(clone->Rb(1), 0.4F);
}

}  // namespace

}  // namespace orv
