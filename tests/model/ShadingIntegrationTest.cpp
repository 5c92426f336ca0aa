#include <gtest/gtest.h>

#include "model/ShadingIntegration.h"
#include "model/SpectralWeighting.h"

namespace orv {

namespace {

std::vector<double> wavelengths(double first, double last, double step) {
  std::vector<double> all;
  for (double w = first; w <= last; w += step) {
    all.push_back(w);
  }
  return all;
}

/// 1 at the wavelengths from `first` to `last`, 0 elsewhere.
std::vector<double> band(const std::vector<double>& all, double first, double last) {
  std::vector<double> values;
  for (const double w : all) {
    values.push_back(w >= first && w <= last ? 1 : 0);
  }
  return values;
}

TEST(SpectralWeighting, LeavesAConstantAsItIs) {
  const auto all = wavelengths(300, 2600, 50);
  const std::vector<double> constant(all.size(), 0.4);
  for (const auto weighting : {Weighting::Solar, Weighting::Visual, Weighting::Ultraviolet}) {
    EXPECT_NEAR(*weightedMean(weighting, all, constant), 0.4, 1e-12);
  }
}

TEST(SpectralWeighting, SharesTheSolarRadiationAsTheStandardDoes) {
  // The sun's global spectrum holds about half its power in the visible, 3 % in the ultraviolet.
  const auto all = wavelengths(300, 2600, 1);
  EXPECT_NEAR(*weightedMean(Weighting::Solar, all, band(all, 380, 780)), 0.545, 0.03);
  EXPECT_NEAR(*weightedMean(Weighting::Solar, all, band(all, 300, 380)), 0.033, 0.01);
  EXPECT_NEAR(*weightedMean(Weighting::Solar, all, band(all, 780, 2600)), 0.42, 0.03);
}

TEST(SpectralWeighting, SeesNoLightOutsideItsRange) {
  const auto all = wavelengths(300, 2600, 1);
  EXPECT_NEAR(*weightedMean(Weighting::Visual, all, band(all, 500, 620)), 0.89, 0.02);
  EXPECT_EQ(*weightedMean(Weighting::Visual, all, band(all, 800, 2600)), 0);
  EXPECT_EQ(*weightedMean(Weighting::Ultraviolet, all, band(all, 390, 2600)), 0);
}

TEST(SpectralWeighting, HasNoMeanOfASpectrumThatMissesTheRange) {
  const auto visible = wavelengths(380, 780, 10);
  const std::vector<double> values(visible.size(), 0.5);
  EXPECT_TRUE(weightedMean(Weighting::Visual, visible, values).has_value());
  EXPECT_FALSE(weightedMean(Weighting::Solar, visible, values).has_value());
  EXPECT_FALSE(weightedMean(Weighting::Ultraviolet, visible, values).has_value());
  EXPECT_FALSE(weightedMean(Weighting::Visual, {}, {}).has_value());
}

TEST(ShadingIntegration, TellsBeamFromScatteredLightAndAddsThemAtNormalIncidence) {
  ShadingDataClass shading;
  shading.spectrum({{.wavelength = 2600, .T_out_BB = 0.1, .R_in_BB = 0.05, .T_out_BD = 0.2},
                    {.wavelength = 300, .T_out_BB = 0.1, .R_in_BB = 0.05, .T_out_BD = 0.2}});
  calculateIntegratedValues(shading);
  EXPECT_NEAR(shading.Sol_transm_slat_surf_BB(), 0.1, 1e-12);
  EXPECT_NEAR(shading.Sol_transm_slat_surf(), 0.2, 1e-12);
  EXPECT_NEAR(shading.Uv_refl_slat_surf_ind_BB(), 0.05, 1e-12);
  ASSERT_EQ(shading.integrated().size(), 1U);
  const ShadingIntegratedData& row = shading.integrated().front();
  EXPECT_EQ(row.angle, 0);
  EXPECT_NEAR(row.transmission_visual_outdoor, 0.3, 1e-12);
  EXPECT_NEAR(row.reflection_solar_indoor, 0.05, 1e-12);
  EXPECT_EQ(row.reflection_solar_outdoor, 0);
}

TEST(ShadingIntegration, LeavesAShadingWithoutASpectrumAlone) {
  ShadingDataClass shading;
  shading.Sol_transm_slat_surf(0.7);
  calculateIntegratedValues(shading);
  EXPECT_EQ(shading.Sol_transm_slat_surf(), 0.7);
  EXPECT_TRUE(shading.integrated().empty());
}

}  // namespace

}  // namespace orv
