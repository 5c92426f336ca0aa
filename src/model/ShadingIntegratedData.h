#pragma once

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

}  // namespace orv
