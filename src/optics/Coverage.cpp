#include "optics/Coverage.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>

namespace orv::optics {

namespace {

constexpr double kRounding = 0.01;  // of wavelengths that are kept as 32-bit floats

/// The step at which the standards ask for spectra, at a wavelength in nm.
double measuringStep(double wavelength) {
  return wavelength < 400 ? 5 : wavelength < 1000 ? 10 : 50;
}

bool isWide(const Gap& gap) {
  constexpr double kMostSteps = 10;
  return gap.to - gap.from > kMostSteps * measuringStep(gap.from) + kRounding;
}

bool isUnusual(std::span<const double> wavelengths, std::size_t right) {
  const double from = wavelengths[right - 1];
  const double width = wavelengths[right] - from;
  return width > measuringStep(from) + kRounding ||
         width > kMissingPoint * usualStep(wavelengths, right) + kRounding;
}

/// Goes along the weights and the wavelengths side by side.
class CoverageSum {
 public:
  CoverageSum(std::span<const tables::Point> weights, std::span<const double> wavelengths)
      : weights_(weights), wavelengths_(wavelengths) {}

  Coverage sum() {
    addWeights();
    findGaps();
    coverage_.tableBegin = weights_.front().wavelength;
    coverage_.tableEnd = weights_.back().wavelength;
    coverage_.spectrumBegin = wavelengths_.front();
    coverage_.spectrumEnd = wavelengths_.back();
    return std::move(coverage_);
  }

 private:
  void addWeights() {
    double whole = 0;
    std::size_t right = 0;
    for (const tables::Point& point : weights_) {
      whole += point.value;
      while (right < wavelengths_.size() && wavelengths_[right] < point.wavelength) ++right;
      if (right == wavelengths_.size() || point.wavelength < wavelengths_.front()) continue;
      coverage_.reached += point.value;
      const bool isMeasured = wavelengths_[right] == point.wavelength ||
                              !isWide({wavelengths_[right - 1], wavelengths_[right]});
      if (isMeasured) coverage_.covered += point.value;
    }
    coverage_.reached /= whole;
    coverage_.covered /= whole;
  }

  void findGaps() {
    const double end = weights_.back().wavelength;
    const auto first = std::ranges::upper_bound(wavelengths_, weights_.front().wavelength);
    auto right =
        static_cast<std::size_t>(std::max(first - wavelengths_.begin(), std::ptrdiff_t{1}));
    for (; right < wavelengths_.size() && wavelengths_[right - 1] < end; ++right) {
      const Gap gap{wavelengths_[right - 1], wavelengths_[right]};
      if (isWide(gap)) coverage_.wideGaps.push_back(gap);
      // Beyond the table the standard asks for nothing.
      const bool isWiderThanTable = std::min(gap.to, end) - gap.from > tableStep(gap) + kRounding;
      if (isWiderThanTable && isUnusual(wavelengths_, right)) coverage_.gaps.push_back(gap);
    }
  }

  /// The widest step of the table that a gap touches. Gaps are asked for in ascending order.
  double tableStep(const Gap& gap) {
    while (weights_[next_].wavelength <= gap.from) ++next_;
    double widest = 0;
    for (std::size_t i = std::max<std::size_t>(next_, 1); i < weights_.size(); ++i) {
      if (weights_[i - 1].wavelength >= gap.to) break;
      widest = std::max(widest, weights_[i].wavelength - weights_[i - 1].wavelength);
    }
    return widest;
  }

  std::span<const tables::Point> weights_;
  std::span<const double> wavelengths_;
  std::size_t next_ = 0;  ///< the first weight behind the beginning of the gap that was last
  Coverage coverage_;
};

}  // namespace

double usualStep(std::span<const double> wavelengths, std::size_t right) {
  constexpr std::size_t kAround = 3;
  const std::size_t begin = right > kAround ? right - kAround : 1;
  const std::size_t end = std::min(right + kAround + 1, wavelengths.size());
  std::array<double, 2 * kAround + 1> steps{};
  for (std::size_t i = begin; i < end; ++i) {
    steps[i - begin] = wavelengths[i] - wavelengths[i - 1];
  }
  const auto last = steps.begin() + static_cast<std::ptrdiff_t>(end - begin);
  const auto middle = steps.begin() + static_cast<std::ptrdiff_t>((end - begin) / 2);
  std::nth_element(steps.begin(), middle, last);
  return *middle;
}

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
  for (const Gap& gap : wideGaps) add(gap.from, gap.to);
  if (tableEnd > spectrumEnd) add(spectrumEnd, tableEnd);
  if (ranges.size() > kMost) {
    const std::size_t more = ranges.size() - kMost + 1;
    ranges.resize(kMost - 1);
    ranges.push_back(fmt::format("{} more ranges", more));
  }
  return fmt::format("{}", fmt::join(ranges, " and "));
}

Coverage coverageOf(std::span<const tables::Point> weights, std::span<const double> wavelengths) {
  return CoverageSum(weights, wavelengths).sum();
}

}  // namespace orv::optics
