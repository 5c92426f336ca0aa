#include "optics/ScreenColour.h"

#include <algorithm>
#include <cmath>

namespace orv::optics {

namespace {

using Triple = std::array<double, 3>;

/// Of IEC 61966-2-1: the white, and red, green and blue from X, Y and Z, Y of the white being 1.
constexpr Triple kWhite{0.9505, 1, 1.089};
constexpr std::array<Triple, 3> kFromXYZ{Triple{3.2406, -1.5372, -0.4986},
                                         Triple{-0.9689, 1.8758, 0.0415},
                                         Triple{0.0557, -0.2040, 1.0570}};

/// What a root of CIELAB is of, straight below the bend.
double part(double root) {
  constexpr double kBend = 6.0 / 29;
  return root > kBend ? root * root * root : 3 * kBend * kBend * (root - 4.0 / 29);
}

std::uint8_t encoded(double linear) {
  const double light = std::clamp(linear, 0.0, 1.0);
  const double value =
      light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
  return static_cast<std::uint8_t>(std::lround(255 * value));
}

}  // namespace

std::array<std::uint8_t, 3> screenColour(const Triple& Lab) {
  const double y = (Lab[0] + 16) / 116;
  const Triple XYZ{kWhite[0] * part(y + Lab[1] / 500), kWhite[1] * part(y),
                   kWhite[2] * part(y - Lab[2] / 200)};
  std::array<std::uint8_t, 3> colour{};
  for (std::size_t i = 0; i < colour.size(); ++i) {
    const Triple& row = kFromXYZ[i];
    colour[i] = encoded(row[0] * XYZ[0] + row[1] * XYZ[1] + row[2] * XYZ[2]);
  }
  return colour;
}

}  // namespace orv::optics
