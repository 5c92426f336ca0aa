#include "optics/ColourRendering.h"

#include <cmath>

namespace orv::optics {

namespace {

constexpr std::size_t kSamples = 8;

/// Light, and what eight samples throw back of it: X, Y, Z each, in one scale.
struct Seen {
  std::array<double, 3> light{};
  std::array<std::array<double, 3>, kSamples> samples{};
};

/// Coordinates of CIE 1960.
struct Chromaticity {
  double u;
  double v;
};

Chromaticity chromaticityOf(const std::array<double, 3>& XYZ) {
  const double sum = XYZ[0] + 15 * XYZ[1] + 3 * XYZ[2];
  return {4 * XYZ[0] / sum, 6 * XYZ[1] / sum};
}

double cOf(Chromaticity at) {
  return (4 - at.u - 10 * at.v) / at.v;
}
double dOf(Chromaticity at) {
  return (1.708 * at.v + 0.404 - 1.481 * at.u) / at.v;
}

/// What the eye sees in a colour when it has become used to `test` in place of `reference`.
Chromaticity adapted(Chromaticity colour, Chromaticity test, Chromaticity reference) {
  const double c = cOf(reference) / cOf(test) * cOf(colour);
  const double d = dOf(reference) / dOf(test) * dOf(colour);
  const double divisor = 16.518 + 1.481 * c - d;
  return {(10.872 + 0.404 * c - 4 * d) / divisor, 5.520 / divisor};
}

/// U*, V*, W* of CIE 1964 against a white; Y of the white is 100.
std::array<double, 3> uvw(Chromaticity colour, double Y, Chromaticity white) {
  const double W = 25 * std::cbrt(Y) - 17;
  return {13 * W * (colour.u - white.u), 13 * W * (colour.v - white.v), W};
}

/// D65 through something with this transmittance at the wavelengths of the table.
template <class Transmittance>
Seen seenThrough(Transmittance transmittance) {
  Seen seen;
  for (std::size_t i = 0; i < tables::kObserver1931.size(); ++i) {
    const tables::ObserverPoint& observer = tables::kObserver1931[i];
    const double light = transmittance(i);
    const std::array<double, 3> parts{light * observer.x, light * observer.y, light * observer.z};
    for (std::size_t k = 0; k < parts.size(); ++k) {
      seen.light[k] += parts[k];
      for (std::size_t s = 0; s < kSamples; ++s) {
        seen.samples[s][k] += parts[k] * tables::kColourSamples[i].factors[s];
      }
    }
  }
  return seen;
}

const std::vector<double>& daylight() {
  static const std::vector<double> kDaylight = [] {
    std::vector<double> light;
    for (const tables::ObserverPoint& at : tables::kObserver1931) {
      light.push_back(valueAt(tables::kIlluminantD65, at.wavelength));
    }
    return light;
  }();
  return kDaylight;
}

const Seen& seenInDaylight() {
  static const Seen kSeen = seenThrough([](std::size_t i) { return daylight()[i]; });
  return kSeen;
}

double mean(const Seen& test, const Seen& reference) {
  const Chromaticity white = chromaticityOf(reference.light);
  const Chromaticity light = chromaticityOf(test.light);
  double sum = 0;
  for (std::size_t s = 0; s < kSamples; ++s) {
    const auto& sample = reference.samples[s];
    const auto& seen = test.samples[s];
    const auto a = uvw(chromaticityOf(sample), 100 * sample[1] / reference.light[1], white);
    const auto b =
        uvw(adapted(chromaticityOf(seen), light, white), 100 * seen[1] / test.light[1], white);
    sum += 100 - 4.6 * std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
  }
  return sum / kSamples;
}

}  // namespace

ColourRendering::ColourRendering(std::span<const double> wavelengths) {
  PositionWalk walk(wavelengths);
  for (const tables::ObserverPoint& at : tables::kObserver1931) {
    positions_.push_back(walk.at(at.wavelength));
  }
}

std::optional<double> ColourRendering::Ra(std::span<const double> transmittance) const {
  const Seen test = seenThrough(
      [&](std::size_t i) { return daylight()[i] * valueAt(positions_[i], transmittance); });
  if (test.light[1] <= 0) return std::nullopt;
  return mean(test, seenInDaylight());
}

}  // namespace orv::optics
