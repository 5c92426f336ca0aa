// The unit of the window's measures.
#pragma once

#include <cmath>

namespace orv::app {

inline constexpr int kTwipsPerInch = 1440;

/// `dpi` is the number of logical pixels in an inch of the window's screen.
inline int pixelsFromTwips(double twips, double dpi) {
  return static_cast<int>(std::lround(twips * dpi / kTwipsPerInch));
}
inline int twipsFromPixels(double pixels, double dpi) {
  return static_cast<int>(std::lround(pixels * kTwipsPerInch / dpi));
}

}  // namespace orv::app
