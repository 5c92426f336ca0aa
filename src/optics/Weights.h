// Weighted means of a spectrum.
#pragma once

#include <span>
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

/// The same at ascending wavelengths, each of which is looked for from the last one on.
class TableWalk {
 public:
  explicit TableWalk(std::span<const tables::Point> table) : table_(table) {}
  double valueAt(double wavelength);

 private:
  std::span<const tables::Point> table_;
  std::size_t right_ = 0;  ///< the first point beyond the last wavelength
};

/// Where a wavelength lies between those of a spectrum: the point to its left, and how much of the
/// way to the next. Beyond the ends the nearest point counts alone.
struct Position {
  std::size_t left;
  double share;
};

/// The positions of ascending wavelengths, each of which is looked for from the last one on.
class PositionWalk {
 public:
  explicit PositionWalk(std::span<const double> wavelengths) : wavelengths_(wavelengths) {}
  Position at(double wavelength);

 private:
  std::span<const double> wavelengths_;
  std::size_t right_ = 0;  ///< the first point beyond the last wavelength
};

/// A curve's value at a position.
inline double valueAt(const Position& at, std::span<const double> curve) {
  return at.share == 0 ? curve[at.left]
                       : curve[at.left] + at.share * (curve[at.left + 1] - curve[at.left]);
}

/// Weights carried over to the wavelengths of a spectrum, at which a mean is one sum. It is the
/// mean of the curve, linear between its points and held beyond its ends, at the table's
/// wavelengths.
class GridWeights {
 public:
  GridWeights() = default;
  /// The spectrum has one point at least, the weights do not add up to 0.
  GridWeights(std::span<const tables::Point> weights, std::span<const double> wavelengths);

  double mean(std::span<const double> curve) const;

 private:
  std::size_t first_ = 0;       ///< the first wavelength that counts
  std::vector<double> shares_;  ///< of the wavelengths from there on; they add up to 1
};

}  // namespace orv::optics
