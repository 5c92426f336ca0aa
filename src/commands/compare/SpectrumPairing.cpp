#include "commands/compare/SpectrumPairing.h"

#include <algorithm>
#include <map>

#include "commands/compare/CurveDifference.h"
#include "commands/compare/Fields.h"
#include "model/Text.h"

namespace orv::commands::compare {

namespace {

/// Of panes the curves of a substrate are left out.
std::size_t ownCurves(RecordKind kind) {
  constexpr std::size_t kOfPanes = 3;
  return kind == RecordKind::panes ? kOfPanes : curveNames(kind).size();
}

double meanOf(const Record& record) {
  const Curves& curves = record.curves.front();
  double sum = 0;
  for (std::size_t i = 0; i < curves.grid->size(); ++i) sum += curves.values.front()[i];
  return sum / static_cast<double>(curves.grid->size());
}

bool haveSameCurves(const Record& a, const Record& b, std::size_t count, double tolerance) {
  return std::ranges::equal(a.curves, b.curves, [&](const Curves& inA, const Curves& inB) {
    return inA.angle == inB.angle && areSameCurves(inA, inB, count, tolerance);
  });
}

/// Curves that are nowhere further apart than the tolerance have means that are not either.
class ByMean {
 public:
  explicit ByMean(const RecordSet& set) : set_(set), isTaken_(set.records.size()) {
    for (std::size_t i = 0; i < set.records.size(); ++i) {
      const Record& record = set.records[i];
      if (!record.curves.empty()) byGrid_[record.curves.front().grid].emplace(meanOf(record), i);
    }
  }

  /// Those that are left, have the same curves, and are in the order of the source.
  std::vector<std::size_t> like(const Record& record, double tolerance) const {
    constexpr double kRounding = 1e-6;
    std::vector<std::size_t> found;
    const auto known = byGrid_.find(record.curves.front().grid);
    if (known == byGrid_.end()) return found;
    const double mean = meanOf(record);
    const auto end = known->second.upper_bound(mean + tolerance + kRounding);
    for (auto at = known->second.lower_bound(mean - tolerance - kRounding); at != end; ++at) {
      if (isTaken_[at->second]) continue;
      if (haveSameCurves(record, set_.records[at->second], ownCurves(set_.kind), tolerance)) {
        found.push_back(at->second);
      }
    }
    std::ranges::sort(found);
    return found;
  }

  void take(std::size_t position) { isTaken_[position] = true; }

 private:
  const RecordSet& set_;
  std::vector<bool> isTaken_;
  std::map<Grid, std::multimap<double, std::size_t>> byGrid_;
};

}  // namespace

std::vector<SpectrumMatch> matchSpectra(const RecordSet& a, const RecordSet& b, double tolerance) {
  ByMean inB(b);
  std::vector<SpectrumMatch> matches;
  for (std::size_t i = 0; i < a.records.size(); ++i) {
    const Record& record = a.records[i];
    if (record.curves.empty()) continue;
    const auto found = inB.like(record, tolerance);
    if (found.empty()) continue;
    const auto named = std::ranges::find_if(found, [&](std::size_t each) {
      return equalIgnoringCase(b.records[each].name, record.name);
    });
    const std::size_t match = named == found.end() ? found.front() : *named;
    inB.take(match);
    matches.push_back({i, match, found.size() > 1});
  }
  return matches;
}

}  // namespace orv::commands::compare
