#include "commands/compare/Pairing.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>
#include <map>

#include "commands/compare/SpectrumPairing.h"
#include "store/TextKey.h"

namespace orv::commands::compare {

namespace {

using Positions = std::vector<std::size_t>;

/// Without what stands behind the last point, where that begins with a letter and has no blank:
/// "Float 4.0 mm" has no extension.
std::string withoutExtension(const std::string& name) {
  const auto dot = name.find_last_of('.');
  if (dot == std::string::npos || dot == 0) return name;
  const std::string_view extension = std::string_view(name).substr(dot + 1);
  const bool isOne = !extension.empty() && std::isalpha(static_cast<unsigned char>(extension[0])) &&
                     extension.find(' ') == std::string_view::npos;
  return isOne ? name.substr(0, dot) : name;
}

/// What the records that belong together have in common: a database finds one by its name as the
/// store compares texts.
class Keys {
 public:
  Keys(Match match, bool withGroups) : match_(match), withGroups_(withGroups) {}

  std::string of(const Record& record) const {
    switch (match_) {
      case Match::id:
        return record.identifiers.front();
      case Match::filename:
        return store::textKey(withoutExtension(record.name));
      default:
        break;
    }
    const std::string name = store::textKey(record.name);
    return withGroups_ ? name + '\n' + store::textKey(record.group) : name;
  }

 private:
  Match match_;
  bool withGroups_;
};

/// Records of one key, in the order of their sources.
struct Alike {
  Positions a = {};
  Positions b = {};
  bool isAmbiguous() const { return (!a.empty() && b.size() > 1) || (!b.empty() && a.size() > 1); }
};

class PairMaker {
 public:
  PairMaker(const RecordSet& a, const RecordSet& b, const CompareOptions& options)
      : a_(a),
        b_(b),
        options_(options),
        keys_(options.match, a.hasGroups && b.hasGroups && !options.group),
        partnerOfA_(a.records.size()),
        isTaken_(b.records.size()) {}

  Pairing make() {
    if (options_.match == Match::spectrum && a_.kind != RecordKind::frames) pairBySpectrum();
    pairByKey();
    return inOrder();
  }

 private:
  struct Partner {
    std::optional<std::size_t> b = {};
    bool isAmbiguous = false;
    bool isSettled = false;  ///< none will be looked for any more
  };

  void pairBySpectrum() {
    std::size_t without = 0;
    for (std::size_t i = 0; i < a_.records.size(); ++i) {
      partnerOfA_[i].isSettled = !a_.records[i].curves.empty();
      without += a_.records[i].curves.empty() ? 1 : 0;
    }
    for (std::size_t i = 0; i < b_.records.size(); ++i) {
      if (b_.records[i].curves.empty()) {
        ++without;
      } else {
        hasCurves_.push_back(i);
      }
    }
    for (const SpectrumMatch& match : matchSpectra(a_, b_, options_.tolerance)) {
      partnerOfA_[match.a].b = match.b;
      partnerOfA_[match.a].isAmbiguous = match.isAmbiguous;
      isTaken_[match.b] = true;
    }
    if (without == 0) return;
    pairing_.remarks.push_back(fmt::format("{} {} without a spectrum: put together by name.",
                                           without, without == 1 ? "record is" : "records are"));
  }

  bool mayBePaired(std::size_t b) const {
    return !isTaken_[b] && !std::ranges::binary_search(hasCurves_, b);
  }

  void pairByKey() {
    std::map<std::string, Alike> alike;
    for (std::size_t i = 0; i < a_.records.size(); ++i) {
      if (!partnerOfA_[i].isSettled) alike[keys_.of(a_.records[i])].a.push_back(i);
    }
    for (std::size_t i = 0; i < b_.records.size(); ++i) {
      if (mayBePaired(i)) alike[keys_.of(b_.records[i])].b.push_back(i);
    }
    std::vector<std::string> told;
    for (const auto& [key, each] : alike) {
      const std::size_t pairs = std::min(each.a.size(), each.b.size());
      for (std::size_t k = 0; k < pairs; ++k) {
        partnerOfA_[each.a[k]].b = each.b[k];
        isTaken_[each.b[k]] = true;
      }
      if (!each.isAmbiguous()) continue;
      for (const std::size_t i : each.a) partnerOfA_[i].isAmbiguous = true;
      for (const std::size_t i : each.b) ambiguousInB_.push_back(i);
      told.push_back(fmt::format("{} ({} in A, {} in B)", a_.records[each.a.front()].name,
                                 each.a.size(), each.b.size()));
    }
    tellAmbiguous(told);
  }

  void tellAmbiguous(std::vector<std::string> told) {
    if (told.empty()) return;
    constexpr std::size_t kMost = 10;
    const std::size_t more = told.size() - std::min(told.size(), kMost);
    told.resize(told.size() - more);
    pairing_.remarks.push_back(
        fmt::format("Several {} of one name, of which the first was put together with the first, "
                    "the second with the second: {}{}.",
                    setName(a_.kind), fmt::join(told, ", "),
                    more > 0 ? fmt::format(", and {} more names", more) : ""));
  }

  Pairing inOrder() {
    std::ranges::sort(ambiguousInB_);
    for (std::size_t i = 0; i < a_.records.size(); ++i) {
      pairing_.pairs.push_back({i, partnerOfA_[i].b, partnerOfA_[i].isAmbiguous});
    }
    for (std::size_t i = 0; i < b_.records.size(); ++i) {
      if (isTaken_[i]) continue;
      pairing_.pairs.push_back({{}, i, std::ranges::binary_search(ambiguousInB_, i)});
    }
    return std::move(pairing_);
  }

  const RecordSet& a_;
  const RecordSet& b_;
  const CompareOptions& options_;
  Keys keys_;
  std::vector<Partner> partnerOfA_;
  std::vector<bool> isTaken_;
  Positions hasCurves_;  ///< of B, when they are put together by them
  Positions ambiguousInB_;
  Pairing pairing_;
};

}  // namespace

Pairing pairUp(const RecordSet& a, const RecordSet& b, const CompareOptions& options) {
  return PairMaker(a, b, options).make();
}

}  // namespace orv::commands::compare
