// Wavelengths as they are compared.
#pragma once

#include <cmath>

namespace orv::optics {

/// A wavelength to a thousandth of a nm, which frees it of what a 32-bit float in µm adds.
inline double rounded(double nanometers) {
  constexpr double kPerNanometer = 1000;
  return std::round(nanometers * kPerNanometer) / kPerNanometer;
}

}  // namespace orv::optics
