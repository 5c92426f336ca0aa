// The same spectrum under two names.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>

#include "commands/audit/SourceRules.h"
#include "model/Text.h"

namespace orv::commands::audit {

namespace {

constexpr double kTolerance = 1e-4;
constexpr std::size_t kCurvesKept = 3;

/// Means of curves that are nowhere further apart than the tolerance are no further apart either.
/// So spectra that are alike lie in the same cell of this width, or in two that touch.
struct Cell {
  std::size_t grid;
  std::int16_t angle;
  std::array<std::int64_t, kCurvesKept> means;
  auto operator<=>(const Cell&) const = default;
};

Cell cellOf(const KeptSpectrum& spectrum) {
  Cell cell{.grid = spectrum.grid, .angle = spectrum.angle, .means = {}};
  const std::size_t points = spectrum.values.size() / kCurvesKept;
  for (std::size_t c = 0; c < kCurvesKept; ++c) {
    double sum = 0;
    for (std::size_t i = 0; i < points; ++i) sum += spectrum.values[c * points + i];
    cell.means[c] = std::llround(sum / static_cast<double>(points) / kTolerance);
  }
  return cell;
}

/// The largest difference of two spectra; none where they are not alike, which most show soon.
std::optional<double> differenceOfAlike(const KeptSpectrum& a, const KeptSpectrum& b) {
  constexpr double kRounding = 1e-7;  // of 32-bit floats
  double largest = 0;
  for (std::size_t i = 0; i < a.values.size(); ++i) {
    largest = std::max(largest, std::abs(double{a.values[i]} - double{b.values[i]}));
    if (largest > kTolerance + kRounding) return std::nullopt;
  }
  return largest;
}

/// Spectra, of those that are alike the first one.
class Collection {
 public:
  /// The one that this is like, and by how much they differ; it is kept where there is none.
  std::pair<const KeptSpectrum*, double> addOrFind(const KeptSpectrum& spectrum) {
    const Cell own = cellOf(spectrum);
    for (std::int64_t T = -1; T <= 1; ++T) {
      for (std::int64_t Rf = -1; Rf <= 1; ++Rf) {
        for (std::int64_t Rb = -1; Rb <= 1; ++Rb) {
          Cell cell = own;
          cell.means = {own.means[0] + T, own.means[1] + Rf, own.means[2] + Rb};
          const auto known = cells_.find(cell);
          if (known == cells_.end()) continue;
          for (const KeptSpectrum* other : known->second) {
            if (const auto difference = differenceOfAlike(*other, spectrum)) {
              return {other, *difference};
            }
          }
        }
      }
    }
    cells_[own].push_back(&spectrum);
    return {nullptr, 0};
  }

 private:
  std::map<Cell, std::vector<const KeptSpectrum*>> cells_;
};

}  // namespace

std::vector<PlacedFault> duplicates(const SourceFacts& source) {
  Collection collection;
  std::vector<PlacedFault> faults;
  for (const KeptSpectrum& spectrum : source.spectra) {
    const auto [known, difference] = collection.addOrFind(spectrum);
    if (known == nullptr) continue;
    const RecordFacts& record = source.records[spectrum.record];
    const RecordFacts& other = source.records[known->record];
    if (equalIgnoringCase(record.name, other.name)) continue;
    const std::string how = difference == 0 ? "" : fmt::format(", within {:.1g},", difference);
    faults.push_back(at(record, {.field = "spectrum",
                                 .value = other.name,
                                 .message = fmt::format("The spectrum is{} that of {} (record {})",
                                                        how, other.name, other.identifier),
                                 .angle = spectrum.angle}));
  }
  return faults;
}

}  // namespace orv::commands::audit
