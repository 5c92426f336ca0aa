#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "model/Codes.h"

namespace orv::app {

/// A mark on an axis of wavelengths.
struct AxisTick {
  double position;  ///< on the scale
  QString label;
};

/// How wavelengths lie along an axis and how they are written. Wavelengths are in microns, whatever
/// the unit that is shown; a position is the wavelength itself or, on a logarithmic scale, its
/// decimal logarithm.
struct WavelengthScale {
  std::int32_t unit = kNanometers;  ///< `WavelengthUnitCode` of the texts
  bool logarithmic = false;

  double position(double microns) const;
  double wavelength(double position) const;  ///< microns

  double inUnit(double microns) const { return unit == kNanometers ? microns * 1000 : microns; }
  QString unitText() const;  ///< "nm" or "µm"
  /// With four significant digits, without the unit.
  QString text(double microns) const;

  /// Round wavelengths from `low` to `high` (microns), about `count` of them and never many more.
  std::vector<AxisTick> ticks(double low, double high, int count) const;

 private:
  std::vector<double> linearTicks(double low, double high, int count) const;
  std::vector<double> logarithmicTicks(double low, double high, int count) const;
};

/// The step of 1, 2 or 5 times a power of ten that divides a length into at most `count` parts.
double roundStep(double length, int count);

}  // namespace orv::app
