// The tables that the standards of glazing weight spectra with, as they print them.
#pragma once

#include <array>
#include <span>

namespace orv::optics::tables {

/// A wavelength in nm and the value there.
struct Point {
  double wavelength;
  double value;
};

/// A wavelength in nm and the colour matching functions there.
struct ObserverPoint {
  double wavelength;
  double x;
  double y;
  double z;
};

/// A wavelength in nm and the radiance factors of the eight samples there.
struct SamplePoint {
  double wavelength;
  std::array<double, 8> factors;
};

// Densities, which are integrated over the wavelengths.
extern const std::span<const Point> kSolarAstmE891;
extern const std::span<const Point> kSolarIso9845;
extern const std::span<const Point> kIlluminantD65;
extern const std::span<const Point> kLuminousEfficiencyE308;
extern const std::span<const Point> kErythemalMcKinlay;
extern const std::span<const Point> kUltravioletSayre;
extern const std::span<const ObserverPoint> kObserver1931;
extern const std::span<const ObserverPoint> kObserver1964;
extern const std::span<const SamplePoint> kColourSamples;

// Weights, which have the interval of wavelengths in them and are added up.
extern const std::span<const Point> kSolarEn410;
extern const std::span<const Point> kUltravioletIso9050;
extern const std::span<const Point> kVisibleIso9050;

}  // namespace orv::optics::tables
