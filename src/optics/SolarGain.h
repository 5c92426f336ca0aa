// The total solar energy transmittance.
#pragma once

namespace orv::optics {

/// g of a single pane, from outdoors in front to indoors behind, as EN 410 and ISO 9050 have it:
/// what passes, and of what is absorbed the part that goes indoors.
///
/// @param emissivity  hemispherical, of the surface indoors
constexpr double solarGain(double transmittance, double reflectance, double emissivity) {
  constexpr double kOutdoors = 23;  // W/(m²·K), radiation and a wind of 4 m/s
  const double indoors = 3.6 + 4.4 * emissivity / 0.837;
  const double absorbed = 1 - transmittance - reflectance;
  return transmittance + absorbed * indoors / (indoors + kOutdoors);
}

}  // namespace orv::optics
