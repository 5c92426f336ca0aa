#include "optics/Weights.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <numeric>

namespace orv::optics {

namespace {

/// The step at which the standards ask for spectra, at a wavelength in nm.
double measuringStep(double wavelength) {
  return wavelength < 400 ? 5 : wavelength < 1000 ? 10 : 50;
}

/// The widest step of the table that a range of wavelengths touches; 0 when it touches none.
double tableStep(std::span<const tables::Point> weights, double from, double to) {
  double widest = 0;
  for (std::size_t i = 1; i < weights.size(); ++i) {
    const double left = weights[i - 1].wavelength;
    const double right = weights[i].wavelength;
    if (left < to && right > from) widest = std::max(widest, right - left);
  }
  return widest;
}

constexpr double kRounding = 0.01;  // of wavelengths that are kept as 32-bit floats

std::vector<Gap> gapsOf(std::span<const tables::Point> weights,
                        std::span<const double> wavelengths) {
  std::vector<Gap> gaps;
  for (std::size_t i = 1; i < wavelengths.size(); ++i) {
    const double from = wavelengths[i - 1];
    const double to = wavelengths[i];
    if (to - from <= measuringStep(from) + kRounding) continue;
    const double step = tableStep(weights, from, to);
    if (step > 0 && to - from > step + kRounding) gaps.push_back({from, to});
  }
  return gaps;
}

/// The gaps in which a straight line is no measurement any more.
std::vector<Gap> wideGapsOf(std::span<const double> wavelengths) {
  constexpr double kMostSteps = 10;
  std::vector<Gap> gaps;
  for (std::size_t i = 1; i < wavelengths.size(); ++i) {
    const double from = wavelengths[i - 1];
    const double to = wavelengths[i];
    if (to - from > kMostSteps * measuringStep(from) + kRounding) gaps.push_back({from, to});
  }
  return gaps;
}

bool isIn(std::span<const Gap> gaps, double wavelength) {
  return std::ranges::any_of(
      gaps, [&](const Gap& gap) { return wavelength > gap.from && wavelength < gap.to; });
}

}  // namespace

std::string told(std::span<const Gap> gaps) {
  constexpr std::size_t kMost = 3;
  std::string text;
  for (const Gap& gap : gaps.subspan(0, std::min(gaps.size(), kMost))) {
    text +=
        fmt::format("{}{} and {} nm", text.empty() ? "nothing between " : ", ", gap.from, gap.to);
  }
  if (gaps.size() > kMost) text += fmt::format(", and in {} more gaps", gaps.size() - kMost);
  return text;
}

std::string Coverage::missing() const {
  constexpr std::size_t kMost = 4;
  std::vector<std::string> ranges;
  const auto add = [&](double from, double to) {
    ranges.push_back(
        fmt::format("{} to {} nm", std::max(from, tableBegin), std::min(to, tableEnd)));
  };
  if (tableBegin < spectrumBegin) add(tableBegin, spectrumBegin);
  for (const Gap& gap : wideGaps) {
    if (gap.from < tableEnd && gap.to > tableBegin) add(gap.from, gap.to);
  }
  if (tableEnd > spectrumEnd) add(spectrumEnd, tableEnd);
  if (ranges.size() > kMost) {
    const std::size_t more = ranges.size() - kMost + 1;
    ranges.resize(kMost - 1);
    ranges.push_back(fmt::format("{} more ranges", more));
  }
  return fmt::format("{}", fmt::join(ranges, " and "));
}

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
  if (right == table.begin()) return table.front().value;
  if (right == table.end()) return table.back().value;
  const tables::Point& a = *(right - 1);
  const tables::Point& b = *right;
  return a.value +
         (wavelength - a.wavelength) / (b.wavelength - a.wavelength) * (b.value - a.value);
}

Position positionOf(double wavelength, std::span<const double> wavelengths) {
  const auto right = static_cast<std::size_t>(std::ranges::upper_bound(wavelengths, wavelength) -
                                              wavelengths.begin());
  if (right == 0) return {0, 0};
  const std::size_t left = right - 1;
  if (right == wavelengths.size()) return {left, 0};
  return {left, (wavelength - wavelengths[left]) / (wavelengths[right] - wavelengths[left])};
}

GridWeights::GridWeights(std::span<const tables::Point> weights,
                         std::span<const double> wavelengths) {
  std::vector<double> shares(wavelengths.size());
  double whole = 0;
  double covered = 0;
  double reached = 0;
  std::vector<Gap> wideGaps = wideGapsOf(wavelengths);
  std::size_t last = 0;
  first_ = wavelengths.size();
  for (const tables::Point& point : weights) {
    const Position at = positionOf(point.wavelength, wavelengths);
    shares[at.left] += (1 - at.share) * point.value;
    if (at.share > 0) shares[at.left + 1] += at.share * point.value;
    first_ = std::min(first_, at.left);
    last = std::max(last, at.left + (at.share > 0 ? 1 : 0));
    whole += point.value;
    const bool isReached =
        point.wavelength >= wavelengths.front() && point.wavelength <= wavelengths.back();
    if (!isReached) continue;
    reached += point.value;
    if (!isIn(wideGaps, point.wavelength)) covered += point.value;
  }
  for (double& share : shares) share /= whole;
  using Offset = std::vector<double>::difference_type;
  shares_.assign(shares.begin() + static_cast<Offset>(first_),
                 shares.begin() + static_cast<Offset>(last) + 1);
  coverage_ = {.covered = covered / whole,
               .reached = reached / whole,
               .tableBegin = weights.front().wavelength,
               .tableEnd = weights.back().wavelength,
               .spectrumBegin = wavelengths.front(),
               .spectrumEnd = wavelengths.back(),
               .gaps = gapsOf(weights, wavelengths),
               .wideGaps = std::move(wideGaps)};
}

double GridWeights::mean(std::span<const double> curve) const {
  return std::transform_reduce(shares_.begin(), shares_.end(), curve.begin() + first_, 0.0);
}

}  // namespace orv::optics
