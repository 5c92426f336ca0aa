#include "commands/compare/SpectrumPairing.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "commands/NearSpectra.h"
#include "commands/compare/CurveDifference.h"
#include "commands/compare/Fields.h"
#include "store/TextKey.h"

namespace orv::commands::compare {

namespace {

/// Of panes the curves of a substrate are left out.
std::size_t ownCurves(RecordKind kind) {
  constexpr std::size_t kOfPanes = 3;
  return kind == RecordKind::panes ? kOfPanes : curveNames(kind).size();
}

/// Those of the first measurement.
CurveMeans meansOf(const Record& record) {
  const Curves& curves = record.curves.front();
  CurveMeans means{};
  for (std::size_t c = 0; c < means.size(); ++c) {
    double sum = 0;
    for (std::size_t i = 0; i < curves.grid->size(); ++i) sum += curves.values[c][i];
    means[c] = sum / static_cast<double>(curves.grid->size());
  }
  return means;
}

class SpectrumPairing {
 public:
  SpectrumPairing(const RecordSet& a, const RecordSet& b, double tolerance,
                  const std::function<void()>& goOn)
      : a_(a),
        b_(b),
        tolerance_(tolerance),
        goOn_(goOn),
        count_(ownCurves(a.kind)),
        near_(tolerance),
        partners_(a.records.size()),
        isTaken_(b.records.size()) {}

  std::vector<SpectrumMatch> run() {
    pairByName();
    for (std::size_t i = 0; i < b_.records.size(); ++i) {
      const Record& record = b_.records[i];
      if (!isTaken_[i] && !record.curves.empty()) near_.add(placeOf(record), meansOf(record), i);
    }
    for (std::size_t i = 0; i < a_.records.size(); ++i) {
      goOn_();
      if (!partners_[i] && !a_.records[i].curves.empty()) pairWithFirst(i);
    }
    return std::move(matches_);
  }

 private:
  using Place = std::pair<Grid, std::optional<double>>;

  static Place placeOf(const Record& record) {
    return {record.curves.front().grid, record.curves.front().angle};
  }

  bool areAlike(const Record& a, const Record& b) const {
    return std::ranges::equal(a.curves, b.curves, [&](const Curves& inA, const Curves& inB) {
      return inA.angle == inB.angle && areSameCurves(inA, inB, count_, tolerance_);
    });
  }

  void pairByName() {
    std::multimap<std::string, std::size_t> names;
    for (std::size_t i = 0; i < b_.records.size(); ++i) {
      if (!b_.records[i].curves.empty()) names.emplace(store::textKey(b_.records[i].name), i);
    }
    for (std::size_t i = 0; i < a_.records.size(); ++i) {
      goOn_();
      const Record& record = a_.records[i];
      if (record.curves.empty()) continue;
      const auto [first, last] = names.equal_range(store::textKey(record.name));
      const auto found = std::find_if(
          first, last, [&](const auto& each) { return areAlike(record, b_.records[each.second]); });
      if (found == last) continue;
      take({i, found->second, false});
      names.erase(found);
    }
  }

  void pairWithFirst(std::size_t i) {
    const Record& record = a_.records[i];
    std::optional<std::size_t> first;
    const bool hasMore = near_.find(placeOf(record), meansOf(record), [&](std::size_t other) {
      if (!areAlike(record, b_.records[other])) return false;
      if (first) return true;
      first = other;
      return false;
    });
    if (!first) return;
    take({i, *first, hasMore});
    near_.remove(placeOf(b_.records[*first]), meansOf(b_.records[*first]), *first);
  }

  void take(const SpectrumMatch& match) {
    partners_[match.a] = match.b;
    isTaken_[match.b] = true;
    matches_.push_back(match);
  }

  const RecordSet& a_;
  const RecordSet& b_;
  double tolerance_;
  const std::function<void()>& goOn_;
  std::size_t count_;
  NearSpectra<Place, std::size_t> near_;
  std::vector<std::optional<std::size_t>> partners_;
  std::vector<bool> isTaken_;
  std::vector<SpectrumMatch> matches_;
};

}  // namespace

std::vector<SpectrumMatch> matchSpectra(const RecordSet& a, const RecordSet& b, double tolerance,
                                        const std::function<void()>& goOn) {
  return SpectrumPairing(a, b, tolerance, goOn).run();
}

}  // namespace orv::commands::compare
