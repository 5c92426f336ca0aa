// How much of a weighting a spectrum covers, and where it has gaps.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "optics/tables/Tables.h"

namespace orv::optics {

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

struct Coverage {
  double covered = 0;  ///< part of the weight at which the spectrum has something, 0 to 1
  double reached = 0;  ///< part of the weight between the spectrum's ends, wide gaps and all
  double tableBegin = 0;
  double tableEnd = 0;
  double spectrumBegin = 0;
  double spectrumEnd = 0;
  /// Gaps in the spectrum that are wider than the table's step there, and unusual: wider than the
  /// step at which spectra are measured (5 nm below 400 nm, 10 nm below 1000 nm, 50 nm beyond), or
  /// more than half as wide again as the steps around them.
  std::vector<Gap> gaps;
  /// Those that are wider than ten steps of measuring. Weights in them do not count as covered.
  std::vector<Gap> wideGaps = {};

  /// "300 to 340 nm and 2000 to 2500 nm": what of the table lies beyond the spectrum's ends or in
  /// its wide gaps.
  std::string missing() const;
  bool suffices() const { return covered >= kLeastCovered; }
};

/// The median of the seven steps of a spectrum around the one that ends at `right`, itself among
/// them: where the step changes, that of the side on which this one is. Points are missing where a
/// step is more than kMissingPoint times as wide.
double usualStep(std::span<const double> wavelengths, std::size_t right);
inline constexpr double kMissingPoint = 1.5;

/// Of weights, of which there are some, at wavelengths in nm, of which there is one at least. Both
/// ascending.
Coverage coverageOf(std::span<const tables::Point> weights, std::span<const double> wavelengths);

}  // namespace orv::optics
