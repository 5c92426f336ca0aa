// The same spectrum under two names.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "commands/NearSpectra.h"
#include "commands/audit/SourceRules.h"
#include "model/Text.h"

namespace orv::commands::audit {

namespace {

constexpr double kTolerance = 1e-4;
constexpr std::size_t kCurvesKept = 4;

/// Transmittance, of which that from the back is mostly the same, and both reflectances.
CurveMeans meansOf(const KeptSpectrum& spectrum) {
  CurveMeans means{};
  const std::size_t points = spectrum.values.size() / kCurvesKept;
  for (std::size_t c = 0; c < means.size(); ++c) {
    double sum = 0;
    for (std::size_t i = 0; i < points; ++i) sum += spectrum.values[c * points + i];
    means[c] = sum / static_cast<double>(points);
  }
  return means;
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
    const std::pair place(spectrum.grid, spectrum.angle);
    const CurveMeans means = meansOf(spectrum);
    std::pair<const KeptSpectrum*, double> found{nullptr, 0};
    const bool isKnown = near_.find(place, means, [&](const KeptSpectrum* other) {
      const auto difference = differenceOfAlike(*other, spectrum);
      if (difference) found = {other, *difference};
      return difference.has_value();
    });
    if (!isKnown) near_.add(place, means, &spectrum);
    return found;
  }

 private:
  NearSpectra<std::pair<std::size_t, std::int16_t>, const KeptSpectrum*> near_{kTolerance};
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
