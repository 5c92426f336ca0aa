// Panes for the tests of the docks.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/GlazingData.h"

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
  if (points.size() == 0) return pane;
  auto spectrum = std::make_shared<SpectralData>();
  spectrum->Allocate(static_cast<std::int32_t>(points.size()) - 1);
  std::int32_t i = 0;
  for (const Point& point : points) {
    spectrum->wl(i, point.wavelength);
    spectrum->Tf(i, point.transmittance);
    spectrum->Rf(i, point.frontReflectance);
    spectrum->Rb(i, point.backReflectance);
    ++i;
  }
  pane->SpectralData(spectrum);
  return pane;
}

}  // namespace orv::app
