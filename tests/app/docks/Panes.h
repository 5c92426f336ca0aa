// Panes for the tests of the docks.
#pragma once

#include "support/FullRecords.h"

namespace orv::app {

struct Point {
  float wavelength;
  float transmittance;
  float frontReflectance;
  float backReflectance;
};

/// A pane with a spectrum of these points in nanometres; none without points.
inline std::shared_ptr<GlazingData> makePane(const std::string& name, std::int16_t angle,
                                             const std::vector<Point>& points) {
  auto pane = std::make_shared<GlazingData>();
  pane->filename(name);
  pane->ORV_Angle(angle);
  pane->WavelengthUnit(kNanometers);
  std::vector<std::array<float, 5>> rows;
  for (const auto& [wavelength, t, rf, rb] : points) rows.push_back({wavelength, t, 0, rf, rb});
  if (!rows.empty()) pane->SpectralData(test::spectrumOf(rows));
  return pane;
}

}  // namespace orv::app
