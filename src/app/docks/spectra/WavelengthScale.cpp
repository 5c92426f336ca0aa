#include "app/docks/spectra/WavelengthScale.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace orv::app {

namespace {

/// Below this ratio of its ends a logarithmic axis is nearly even, and even steps read better.
constexpr double kNearlyEven = 3;

std::vector<double> multiples(std::initializer_list<double> mantissas, double low, double high) {
  std::vector<double> result;
  for (double decade = std::pow(10, std::floor(std::log10(low))); decade <= high; decade *= 10) {
    for (const double mantissa : mantissas) {
      const double value = mantissa * decade;
      if (value >= low * (1 - 1e-6) && value <= high * (1 + 1e-6)) result.push_back(value);
    }
  }
  return result;
}

}  // namespace

double roundStep(double length, int count) {
  const double least = length / std::max(count, 1);
  const double decade = std::pow(10, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * decade >= least * (1 - 1e-9)) return factor * decade;
  }
  return 10 * decade;
}

double WavelengthScale::position(double microns) const {
  return logarithmic ? std::log10(microns) : microns;
}

double WavelengthScale::wavelength(double position) const {
  return logarithmic ? std::pow(10, position) : position;
}

QString WavelengthScale::unitText() const {
  return unit == kNanometers ? QStringLiteral("nm") : QStringLiteral("µm");
}

QString WavelengthScale::text(double microns) const {
  const double value = inUnit(microns);
  const int digits = value <= 0 ? 0 : 3 - static_cast<int>(std::floor(std::log10(value)));
  return QString::number(value, 'f', std::clamp(digits, 0, 6));
}

std::vector<AxisTick> WavelengthScale::ticks(double low, double high, int count) const {
  if (!(high > low)) return {};
  const bool even = !logarithmic || high < low * kNearlyEven;
  std::vector<AxisTick> result;
  for (const double microns :
       even ? linearTicks(low, high, count) : logarithmicTicks(low, high, count)) {
    result.push_back({position(microns), QString::number(inUnit(microns), 'g', 7)});
  }
  return result;
}

std::vector<double> WavelengthScale::linearTicks(double low, double high, int count) const {
  const double step = roundStep(high - low, count);
  std::vector<double> result;
  const auto first = static_cast<std::int64_t>(std::ceil(low / step - 1e-6));
  const auto last = static_cast<std::int64_t>(std::floor(high / step + 1e-6));
  for (std::int64_t i = first; i <= last; ++i) result.push_back(static_cast<double>(i) * step);
  return result;
}

std::vector<double> WavelengthScale::logarithmicTicks(double low, double high, int count) const {
  for (const auto& mantissas :
       {std::initializer_list<double>{1, 1.5, 2, 3, 4, 5, 6, 8},
        std::initializer_list<double>{1, 2, 3, 5, 7}, std::initializer_list<double>{1, 2, 5},
        std::initializer_list<double>{1, 3}}) {
    auto result = multiples(mantissas, low, high);
    if (static_cast<int>(result.size()) <= count) return result;
  }
  return multiples({1}, low, high);
}

}  // namespace orv::app
