#include "optics/Weights.h"

#include <algorithm>
#include <numeric>

namespace orv::optics {

namespace {

/// Between the point `right` of a table and the one before it; held beyond the ends.
double valueBefore(std::size_t right, std::span<const tables::Point> table, double wavelength) {
  if (right == 0) return table.front().value;
  if (right == table.size()) return table.back().value;
  const tables::Point& a = table[right - 1];
  const tables::Point& b = table[right];
  return a.value +
         (wavelength - a.wavelength) / (b.wavelength - a.wavelength) * (b.value - a.value);
}

}  // namespace

Weights trapezoids(std::span<const tables::Point> density, double from, double to) {
  Weights weights;
  for (const tables::Point& point : density) {
    if (point.wavelength >= from && point.wavelength <= to) weights.push_back(point);
  }
  const Weights points = weights;
  const std::size_t last = points.size() - 1;
  for (std::size_t i = 0; i <= last; ++i) {
    const double left = points[i == 0 ? 0 : i - 1].wavelength;
    const double right = points[std::min(i + 1, last)].wavelength;
    weights[i].value *= (right - left) / 2;
  }
  return weights;
}

double valueAt(std::span<const tables::Point> table, double wavelength) {
  const auto right = std::ranges::upper_bound(table, wavelength, {}, &tables::Point::wavelength);
  return valueBefore(static_cast<std::size_t>(right - table.begin()), table, wavelength);
}

double TableWalk::valueAt(double wavelength) {
  while (right_ < table_.size() && table_[right_].wavelength <= wavelength) ++right_;
  return valueBefore(right_, table_, wavelength);
}

Position PositionWalk::at(double wavelength) {
  while (right_ < wavelengths_.size() && wavelengths_[right_] <= wavelength) ++right_;
  if (right_ == 0) return {0, 0};
  const std::size_t left = right_ - 1;
  if (right_ == wavelengths_.size()) return {left, 0};
  return {left, (wavelength - wavelengths_[left]) / (wavelengths_[right_] - wavelengths_[left])};
}

GridWeights::GridWeights(std::span<const tables::Point> weights,
                         std::span<const double> wavelengths) {
  double whole = 0;
  PositionWalk walk(wavelengths);
  first_ = PositionWalk(wavelengths).at(weights.front().wavelength).left;
  for (const tables::Point& point : weights) {
    const Position at = walk.at(point.wavelength);
    const std::size_t left = at.left - first_;
    shares_.resize(std::max(shares_.size(), left + (at.share > 0 ? 2 : 1)));
    shares_[left] += (1 - at.share) * point.value;
    if (at.share > 0) shares_[left + 1] += at.share * point.value;
    whole += point.value;
  }
  for (double& share : shares_) share /= whole;
}

double GridWeights::mean(std::span<const double> curve) const {
  return std::transform_reduce(shares_.begin(), shares_.end(), curve.begin() + first_, 0.0);
}

}  // namespace orv::optics
