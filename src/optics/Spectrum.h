// The curves that are integrated.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "model/IntegratedColumns.h"
#include "model/SpectralData.h"

namespace orv::optics {

/// Curves of a pane as double precision, at ascending wavelengths in nm of which each occurs once.
struct Spectrum {
  std::vector<double> wavelengths;
  std::array<std::vector<double>, 4> curves;
  /// What is unusual about it: wavelengths that occurred twice, values outside 0 to 1.
  std::vector<std::string> remarks;

  const std::vector<double>& operator[](Curve curve) const {
    return curves[static_cast<std::size_t>(curve)];
  }
  std::vector<double>& operator[](Curve curve) { return curves[static_cast<std::size_t>(curve)]; }
};

/// Brings the points of a spectrum into order. Of several at one wavelength the mean is taken;
/// points that are no numbers are left out. Both are remarked, and values outside 0 to 1, which
/// stay as they are.
void putInOrder(Spectrum& spectrum);

/// The spectrum of a record, in order. Wavelengths are taken to a thousandth of a nm, which frees
/// them of what a 32-bit float in µm adds.
Spectrum spectrumOf(const SpectralData& data);

}  // namespace orv::optics
