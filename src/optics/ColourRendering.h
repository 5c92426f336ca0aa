// The general colour rendering index.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "optics/Weights.h"

namespace orv::optics {

/// How true colours look in daylight behind a pane: Ra of CIE 13.3-1995, as EN 410 asks for it. For
/// the spectra of one grid of wavelengths.
class ColourRendering {
 public:
  explicit ColourRendering(std::span<const double> wavelengths);

  /// 100 for a pane that leaves colours as they are; none for one that lets no light through.
  std::optional<double> Ra(std::span<const double> transmittance) const;

 private:
  std::vector<Position> positions_;  ///< of the wavelengths of the table
};

}  // namespace orv::optics
