#include <gtest/gtest.h>

#include "optics/ShadingIntegration.h"

namespace orv::optics {

namespace {

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

/// A spectrum of visible light only has no solar and no ultraviolet values.
TEST(ShadingIntegration, WeighsEachRangeByItself) {
  ShadingDataClass shading;
  shading.spectrum({{.wavelength = 380, .R_out_BB = 0.2}, {.wavelength = 780, .R_out_BB = 0.6}});
  calculateIntegratedValues(shading);
  // D65 as the eye sees it has its middle at 560 nm, where the ramp is at 0.38.
  EXPECT_NEAR(shading.Vis_refl_slat_surf_outd_BB(), 0.38, 0.005);
  EXPECT_EQ(shading.Sol_refl_slat_surf_outd_BB(), 0);
  EXPECT_EQ(shading.Uv_refl_slat_surf_outd_BB(), 0);
}

TEST(ShadingIntegration, LeavesAShadingWithoutASpectrumAlone) {
  ShadingDataClass shading;
  shading.Sol_transm_slat_surf(0.7);
  calculateIntegratedValues(shading);
  EXPECT_EQ(shading.Sol_transm_slat_surf(), 0.7);
  EXPECT_TRUE(shading.integrated().empty());
  EXPECT_EQ(ShadingSpectralPoint(), (ShadingSpectralPoint{0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(ShadingIntegratedData(),
            (ShadingIntegratedData{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

}  // namespace

}  // namespace orv::optics
