// Weighted means of a spectrum.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "optics/tables/Tables.h"

namespace orv::optics {

/// What each wavelength of a table counts in a sum. Ascending; wavelengths in nm.
using Weights = std::vector<tables::Point>;

/// The part of a density from one wavelength to another, at the wavelengths of its table, by the
/// trapezoidal rule.
Weights trapezoids(std::span<const tables::Point> density, double from, double to);

/// The density of a product: `density` times what `factor` gives at each of its wavelengths.
template <class Factor>
Weights times(std::span<const tables::Point> density, Factor factor) {
  Weights product(density.begin(), density.end());
  for (tables::Point& point : product) point.value *= factor(point.wavelength);
  return product;
}

/// The value of a table at any wavelength: linear in between, held beyond its ends.
double valueAt(std::span<const tables::Point> table, double wavelength);

/// Where a wavelength lies between those of a spectrum: the point to its left, and how much of the
/// way to the next. Beyond the ends the nearest point counts alone.
struct Position {
  std::size_t left;
  double share;
};
Position positionOf(double wavelength, std::span<const double> wavelengths);

/// A curve's value at a position.
inline double valueAt(const Position& at, std::span<const double> curve) {
  return at.share == 0 ? curve[at.left]
                       : curve[at.left] + at.share * (curve[at.left + 1] - curve[at.left]);
}

/// The least part of the weight that a spectrum has to cover.
inline constexpr double kLeastCovered = 0.9;

/// Two wavelengths between which a spectrum has nothing.
struct Gap {
  double from;
  double to;
  bool operator==(const Gap&) const = default;
};

/// "nothing between 600 and 700 nm, 900 and 1000 nm, and in 3 more gaps"; empty for none.
std::string told(std::span<const Gap> gaps);

/// How much of a weighting a spectrum covers.
struct Coverage {
  double covered = 0;  ///< part of the weight at which the spectrum has something, 0 to 1
  double reached = 0;  ///< part of the weight between the spectrum's ends, wide gaps and all
  double tableBegin = 0;
  double tableEnd = 0;
  double spectrumBegin = 0;
  double spectrumEnd = 0;
  /// Gaps in the spectrum that are wider than the table's step and than the step at which
  /// spectra are measured: 5 nm below 400 nm, 10 nm below 1000 nm, 50 nm beyond.
  std::vector<Gap> gaps;
  /// Those that are wider than ten steps of measuring. Weights in them do not count as covered.
  std::vector<Gap> wideGaps = {};

  /// "300 to 340 nm and 2000 to 2500 nm": what of the table lies beyond the spectrum's ends or in
  /// its wide gaps.
  std::string missing() const;
  bool suffices() const { return covered >= kLeastCovered; }
};

/// Weights carried over to the wavelengths of a spectrum, at which a mean is one sum. It is the
/// mean of the curve, linear between its points and held beyond its ends, at the table's
/// wavelengths.
class GridWeights {
 public:
  GridWeights() = default;
  /// The spectrum has one point at least, the weights do not add up to 0.
  GridWeights(std::span<const tables::Point> weights, std::span<const double> wavelengths);

  double mean(std::span<const double> curve) const;
  const Coverage& coverage() const { return coverage_; }

 private:
  std::size_t first_ = 0;       ///< the first wavelength that counts
  std::vector<double> shares_;  ///< of the wavelengths from there on; they add up to 1
  Coverage coverage_;
};

}  // namespace orv::optics
