// The solar, visible and ultraviolet values of panes and of shadings, as databases store them.
#pragma once

#include <array>

#include "model/GlazingData.h"
#include "model/ShadingIntegratedData.h"

namespace orv {

/// What is integrated: light from the front, which is outdoors, or from the back.
enum class Curve { Tf, Tb, Rf, Rb };
inline constexpr std::array kCurves{Curve::Tf, Curve::Rf, Curve::Tb, Curve::Rb};

/// Over which range.
enum class Band { solar, visible, ultraviolet };

/// One of the values: its column, and where records keep it.
struct IntegratedColumn {
  const char* column;  ///< in the tables of panes and of shadings
  const char* name;    ///< in results: "Tf_sol"
  const char* title;   ///< for people
  Band band;
  Curve curve;
  Property<float> GlazingData::*pane;
  double ShadingIntegratedData::*shading;
};

/// All of them, in the order of files and databases.
inline constexpr std::array kIntegratedColumns{
    IntegratedColumn{"reflection_solar_outdoor", "Rf_sol", "solar reflectance front", Band::solar,
                     Curve::Rf, &GlazingData::Precalc_Rfsol,
                     &ShadingIntegratedData::reflection_solar_outdoor},
    IntegratedColumn{"reflection_solar_indoor", "Rb_sol", "solar reflectance back", Band::solar,
                     Curve::Rb, &GlazingData::Precalc_RbSol,
                     &ShadingIntegratedData::reflection_solar_indoor},
    IntegratedColumn{"transmission_solar_outdoor", "Tf_sol", "solar transmittance front",
                     Band::solar, Curve::Tf, &GlazingData::Precalc_Tfsol,
                     &ShadingIntegratedData::transmission_solar_outdoor},
    IntegratedColumn{"transmission_solar_indoor", "Tb_sol", "solar transmittance back", Band::solar,
                     Curve::Tb, &GlazingData::Precalc_Tbsol,
                     &ShadingIntegratedData::transmission_solar_indoor},
    IntegratedColumn{"reflection_visual_outdoor", "Rf_vis", "visible reflectance front",
                     Band::visible, Curve::Rf, &GlazingData::Precalc_Rfvis,
                     &ShadingIntegratedData::reflection_visual_outdoor},
    IntegratedColumn{"reflection_visual_indoor", "Rb_vis", "visible reflectance back",
                     Band::visible, Curve::Rb, &GlazingData::Precalc_Rbvis,
                     &ShadingIntegratedData::reflection_visual_indoor},
    IntegratedColumn{"transmission_visual_outdoor", "Tf_vis", "visible transmittance front",
                     Band::visible, Curve::Tf, &GlazingData::Precalc_Tfvis,
                     &ShadingIntegratedData::transmission_visual_outdoor},
    IntegratedColumn{"transmission_visual_indoor", "Tb_vis", "visible transmittance back",
                     Band::visible, Curve::Tb, &GlazingData::Precalc_Tbvis,
                     &ShadingIntegratedData::transmission_visual_indoor},
    IntegratedColumn{"reflection_UV_outdoor", "Rf_uv", "ultraviolet reflectance front",
                     Band::ultraviolet, Curve::Rf, &GlazingData::Precalc_Rfuv,
                     &ShadingIntegratedData::reflection_UV_outdoor},
    IntegratedColumn{"reflection_UV_indoor", "Rb_uv", "ultraviolet reflectance back",
                     Band::ultraviolet, Curve::Rb, &GlazingData::Precalc_Rbuv,
                     &ShadingIntegratedData::reflection_UV_indoor},
    IntegratedColumn{"transmission_UV_outdoor", "Tf_uv", "ultraviolet transmittance front",
                     Band::ultraviolet, Curve::Tf, &GlazingData::Precalc_Tfuv,
                     &ShadingIntegratedData::transmission_UV_outdoor},
    IntegratedColumn{"transmission_UV_indoor", "Tb_uv", "ultraviolet transmittance back",
                     Band::ultraviolet, Curve::Tb, &GlazingData::Precalc_Tbuv,
                     &ShadingIntegratedData::transmission_UV_indoor},
};

/// A column of the integrated rows of shadings.
struct ShadingIntegratedColumn {
  const char* name;
  double ShadingIntegratedData::*member;
};

/// The angle, then the values, in the order of files and databases.
inline constexpr auto kShadingIntegratedColumns = [] {
  std::array<ShadingIntegratedColumn, kIntegratedColumns.size() + 1> columns{};
  columns[0] = {"angle", &ShadingIntegratedData::angle};
  for (std::size_t i = 0; i < kIntegratedColumns.size(); ++i) {
    columns[i + 1] = {kIntegratedColumns[i].column, kIntegratedColumns[i].shading};
  }
  return columns;
}();

/// `Precalc_Rfsol` of a pane that has no row of integrated values at its angle.
inline constexpr float kNoIntegratedData = -1;
inline bool hasIntegratedData(const GlazingData& pane) {
  return pane.Precalc_Rfsol() != kNoIntegratedData;
}

/// Whether all of a pane's values are 0, as they are where its source gives none.
bool lacksIntegratedValues(const GlazingData& pane);
/// The same of one range.
bool lacksIntegratedValues(const GlazingData& pane, Band band);

}  // namespace orv
