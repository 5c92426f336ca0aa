#pragma once

#include <array>
#include <string_view>

namespace orv {

/// The optics of a shading at one angle of incidence, weighted over the solar, the visible and
/// the ultraviolet range, as fractions. Beam and scattered light are taken together. The members
/// are named as the columns of the databases are, like those of a pane's integrated data.
struct ShadingIntegratedData {
  double angle = 0;  ///< degrees
  double reflection_solar_outdoor = 0;
  double reflection_solar_indoor = 0;
  double transmission_solar_outdoor = 0;
  double transmission_solar_indoor = 0;
  double reflection_visual_outdoor = 0;
  double reflection_visual_indoor = 0;
  double transmission_visual_outdoor = 0;
  double transmission_visual_indoor = 0;
  double reflection_UV_outdoor = 0;
  double reflection_UV_indoor = 0;
  double transmission_UV_outdoor = 0;
  double transmission_UV_indoor = 0;

  bool operator==(const ShadingIntegratedData&) const = default;
};

/// A column of integrated rows: its name in databases and the member that holds it.
struct ShadingIntegratedColumn {
  std::string_view name;
  double ShadingIntegratedData::*member;
};

/// All of them, in the order of files and databases.
inline constexpr std::array kShadingIntegratedColumns{
    ShadingIntegratedColumn{"angle", &ShadingIntegratedData::angle},
    ShadingIntegratedColumn{"reflection_solar_outdoor",
                            &ShadingIntegratedData::reflection_solar_outdoor},
    ShadingIntegratedColumn{"reflection_solar_indoor",
                            &ShadingIntegratedData::reflection_solar_indoor},
    ShadingIntegratedColumn{"transmission_solar_outdoor",
                            &ShadingIntegratedData::transmission_solar_outdoor},
    ShadingIntegratedColumn{"transmission_solar_indoor",
                            &ShadingIntegratedData::transmission_solar_indoor},
    ShadingIntegratedColumn{"reflection_visual_outdoor",
                            &ShadingIntegratedData::reflection_visual_outdoor},
    ShadingIntegratedColumn{"reflection_visual_indoor",
                            &ShadingIntegratedData::reflection_visual_indoor},
    ShadingIntegratedColumn{"transmission_visual_outdoor",
                            &ShadingIntegratedData::transmission_visual_outdoor},
    ShadingIntegratedColumn{"transmission_visual_indoor",
                            &ShadingIntegratedData::transmission_visual_indoor},
    ShadingIntegratedColumn{"reflection_UV_outdoor", &ShadingIntegratedData::reflection_UV_outdoor},
    ShadingIntegratedColumn{"reflection_UV_indoor", &ShadingIntegratedData::reflection_UV_indoor},
    ShadingIntegratedColumn{"transmission_UV_outdoor",
                            &ShadingIntegratedData::transmission_UV_outdoor},
    ShadingIntegratedColumn{"transmission_UV_indoor",
                            &ShadingIntegratedData::transmission_UV_indoor},
};

}  // namespace orv
