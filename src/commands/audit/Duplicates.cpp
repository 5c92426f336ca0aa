// The same spectrum under two names.
#include <fmt/format.h>
#include <fmt/ranges.h>

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
constexpr std::size_t kCurvesKept = 4;
/// Those that tell spectra apart at first; transmittance is mostly the same from both sides.
constexpr std::size_t kCurvesOfCell = 3;

/// Means of curves that are nowhere further apart than the tolerance are no further apart either.
/// So spectra that are alike lie in the same cell of this width, or in two that touch.
struct Cell {
  std::size_t grid;
  std::int16_t angle;
  std::array<std::int64_t, kCurvesOfCell> means;
  auto operator<=>(const Cell&) const = default;
};

Cell cellOf(const KeptSpectrum& spectrum) {
  Cell cell{.grid = spectrum.grid, .angle = spectrum.angle, .means = {}};
  const std::size_t points = spectrum.values.size() / kCurvesKept;
  for (std::size_t c = 0; c < kCurvesOfCell; ++c) {
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

/// Two records that have the same spectra.
struct Pair {
  std::vector<std::int16_t> angles;
  double difference = 0;
};

Fault faultOf(const Pair& pair, const RecordFacts& other) {
  const bool isOne = pair.angles.size() == 1;
  const std::string how =
      pair.difference == 0 ? "" : fmt::format(", within {:.1g},", pair.difference);
  const std::string where =
      isOne ? "" : fmt::format(", at {} degrees", fmt::join(pair.angles, ", "));
  return {.field = "spectrum",
          .value = other.name,
          .message =
              fmt::format("The {}{} of {} (record {}){}", isOne ? "spectrum is" : "spectra are",
                          how + (isOne ? " that" : " those"), other.name, other.identifier, where),
          .angle = pair.angles.front()};
}

}  // namespace

std::vector<PlacedFault> duplicates(const SourceFacts& source) {
  Collection collection;
  std::map<std::pair<std::size_t, std::size_t>, Pair> pairs;
  for (const KeptSpectrum& spectrum : source.spectra) {
    const auto [known, difference] = collection.addOrFind(spectrum);
    if (known == nullptr) continue;
    if (equalIgnoringCase(source.records[spectrum.record].name, source.records[known->record].name))
      continue;
    Pair& pair = pairs[{spectrum.record, known->record}];
    pair.angles.push_back(spectrum.angle);
    pair.difference = std::max(pair.difference, difference);
  }
  std::vector<PlacedFault> faults;
  for (const auto& [records, pair] : pairs) {
    const auto& [record, other] = records;
    faults.push_back(at(source.records[record], faultOf(pair, source.records[other])));
  }
  return faults;
}

}  // namespace orv::commands::audit
