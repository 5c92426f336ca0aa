#include "optics/Colour.h"

#include <algorithm>
#include <cmath>

namespace orv::optics {

namespace {

using tables::ObserverPoint;
using tables::Point;

constexpr std::array kFunctions{&ObserverPoint::x, &ObserverPoint::y, &ObserverPoint::z};
constexpr double kFirstVisible = 380;
constexpr double kLastVisible = 780;
constexpr double kFirstLight = 300;  // where the illuminant begins

using Functions = std::array<Weights, kFunctions.size()>;

Functions functionsAnew(std::span<const ObserverPoint> observer) {
  Functions functions;
  for (std::size_t i = 0; i < kFunctions.size(); ++i) {
    for (const ObserverPoint& point : observer) {
      functions[i].push_back({point.wavelength, point.*kFunctions[i]});
    }
  }
  return functions;
}

const Functions& functionsOf(std::span<const ObserverPoint> observer) {
  static const Functions k1931 = functionsAnew(tables::kObserver1931);
  static const Functions k1964 = functionsAnew(tables::kObserver1964);
  return observer.data() == tables::kObserver1931.data() ? k1931 : k1964;
}

double sumOf(std::span<const Point> weights) {
  double sum = 0;
  for (const Point& point : weights) sum += point.value;
  return sum;
}

/// Light times a matching function at these wavelengths.
Weights lightAt(std::span<const double> wavelengths, std::span<const Point> function) {
  TableWalk daylight(tables::kIlluminantD65);
  TableWalk factor(function);
  Weights light;
  light.reserve(wavelengths.size());
  for (const double at : wavelengths) {
    light.push_back({at, daylight.valueAt(at) * factor.valueAt(at)});
  }
  return light;
}

Light lightOfTableAnew(std::span<const ObserverPoint> observer) {
  std::vector<double> wavelengths;
  for (const ObserverPoint& point : observer) wavelengths.push_back(point.wavelength);
  Light light;
  for (std::size_t i = 0; i < kFunctions.size(); ++i) {
    light.weights[i] = lightAt(wavelengths, functionsOf(observer)[i]);
    light.sums[i] = sumOf(light.weights[i]);
  }
  return light;
}

/// Added up at the wavelengths of the table.
const Light& lightOfTable(std::span<const ObserverPoint> observer) {
  static const Light k1931 = lightOfTableAnew(tables::kObserver1931);
  static const Light k1964 = lightOfTableAnew(tables::kObserver1964);
  return observer.data() == tables::kObserver1931.data() ? k1931 : k1964;
}

/// Integrated at these wavelengths; the sums without the intervals.
Light lightOfSpectrum(std::span<const ObserverPoint> observer, std::span<const double> own) {
  Light light;
  for (std::size_t i = 0; i < kFunctions.size(); ++i) {
    const Weights density = lightAt(own, functionsOf(observer)[i]);
    light.weights[i] = trapezoids(density, own.front(), own.back());
    light.sums[i] = sumOf(density);
  }
  return light;
}

/// The wavelengths at which `ofSpectrum` adds up; none where they lie too far apart.
std::vector<double> ownWavelengths(std::span<const double> wavelengths) {
  constexpr double kWidestStep = 10.001;
  std::vector<double> own;
  double before = kFirstVisible;
  for (const double at : wavelengths) {
    if (at > kFirstVisible && before < kLastVisible && at - before > kWidestStep) return {};
    before = std::max(before, at);
    if (at >= kFirstLight && at <= kLastVisible) own.push_back(at);
  }
  return before < kLastVisible - kWidestStep ? std::vector<double>{} : own;
}

}  // namespace

std::array<double, 3> labOf(const std::array<double, 3>& XYZ, const std::array<double, 3>& white) {
  constexpr double kBend = 6.0 / 29;  // the root is straight below
  const auto root = [](double part) {
    return part > kBend * kBend * kBend ? std::cbrt(part) : part / (3 * kBend * kBend) + 4.0 / 29;
  };
  const double x = root(XYZ[0] / white[0]);
  const double y = root(XYZ[1] / white[1]);
  const double z = root(XYZ[2] / white[2]);
  return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

ColourMethod::ColourMethod(std::span<const ObserverPoint> observer, ColourRule rule,
                           std::span<const double> wavelengths) {
  const Light& ofTable = lightOfTable(observer);
  for (std::size_t i = 0; i < kFunctions.size(); ++i) {
    coverage_[i] = coverageOf(ofTable.weights[i], wavelengths);
  }
  const auto own =
      rule == ColourRule::ofSpectrum ? ownWavelengths(wavelengths) : std::vector<double>{};
  takeFrom(own.empty() ? ofTable : lightOfSpectrum(observer, own), wavelengths);
}

void ColourMethod::takeFrom(const Light& light, std::span<const double> wavelengths) {
  for (std::size_t i = 0; i < weights_.size(); ++i) {
    weights_[i] = GridWeights(light.weights[i], wavelengths);
    white_[i] = 100 * light.sums[i] / light.sums[1];
  }
}

Colour ColourMethod::of(std::span<const double> curve) const {
  Colour colour{};
  for (std::size_t i = 0; i < weights_.size(); ++i) {
    colour.XYZ[i] = white_[i] * weights_[i].mean(curve);
  }
  colour.Lab = labOf(colour.XYZ, white_);
  return colour;
}

}  // namespace orv::optics
