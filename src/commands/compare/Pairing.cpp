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
    return withGroups_ ? nameKey(record.name, record.group) : store::textKey(record.name);
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
  PairMaker(const RecordSet& a, const RecordSet& b, const CompareOptions& options,
            const PairingTools& tools)
      : a_(a),
        b_(b),
        options_(options),
        tools_(tools),
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
    std::vector<std::string> told;
    for (const SpectrumMatch& match : matchSpectra(a_, b_, options_.tolerance, tools_.goOn)) {
      partnerOfA_[match.a].b = match.b;
      partnerOfA_[match.a].isAmbiguous = match.isAmbiguous;
      isTaken_[match.b] = true;
      if (match.isAmbiguous) told.push_back(a_.records[match.a].name);
    }
    tellSome(told,
             "Several {} of B have the spectrum of one of A, and none has its name; "
             "the first that was left was put together with it: {}.");
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
      pairAlike(each);
      if (!each.isAmbiguous()) continue;
      for (const std::size_t i : each.a) partnerOfA_[i].isAmbiguous = true;
      for (const std::size_t i : each.b) ambiguousInB_.push_back(i);
      told.push_back(fmt::format("{} ({} in A, {} in B)", a_.records[each.a.front()].name,
                                 each.a.size(), each.b.size()));
    }
    tellSome(told,
             "Several {} of one name, of which the same were put together, then the first with the "
             "first that was left, the second with the second: {}.");
  }

  void pairAlike(Alike alike) {
    if (alike.isAmbiguous()) {
      // More are not one name by chance, and comparing all with all would take long.
      constexpr std::size_t kMostComparisons = 1U << 16;
      if (alike.a.size() * alike.b.size() <= kMostComparisons) pairThose(alike, tools_.areSame);
      pairThose(alike,
                [](const Record& a, const Record& b) { return a.identifiers == b.identifiers; });
    }
    const std::size_t pairs = std::min(alike.a.size(), alike.b.size());
    for (std::size_t k = 0; k < pairs; ++k) take(alike.a[k], alike.b[k]);
  }

  void pairThose(Alike& alike, const std::function<bool(const Record&, const Record&)>& areOne) {
    std::erase_if(alike.a, [&](std::size_t i) {
      tools_.goOn();
      const auto other = std::ranges::find_if(
          alike.b, [&](std::size_t each) { return areOne(a_.records[i], b_.records[each]); });
      if (other == alike.b.end()) return false;
      take(i, *other);
      alike.b.erase(other);
      return true;
    });
  }

  void take(std::size_t a, std::size_t b) {
    partnerOfA_[a].b = b;
    isTaken_[b] = true;
  }

  /// A remark with the kind of the records and the first of these.
  void tellSome(std::vector<std::string> told, const char* text) {
    if (told.empty()) return;
    constexpr std::size_t kMost = 10;
    const std::size_t more = told.size() - std::min(told.size(), kMost);
    told.resize(told.size() - more);
    const std::string list = fmt::format("{}{}", fmt::join(told, ", "),
                                         more > 0 ? fmt::format(", and {} more", more) : "");
    pairing_.remarks.push_back(fmt::format(fmt::runtime(text), setName(a_.kind), list));
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
  const PairingTools& tools_;
  Keys keys_;
  std::vector<Partner> partnerOfA_;
  std::vector<bool> isTaken_;
  Positions hasCurves_;  ///< of B, when they are put together by them
  Positions ambiguousInB_;
  Pairing pairing_;
};

}  // namespace

Pairing pairUp(const RecordSet& a, const RecordSet& b, const CompareOptions& options,
               const PairingTools& tools) {
  return PairMaker(a, b, options, tools).make();
}

std::string nameKey(const std::string& name, const std::string& group) {
  return store::textKey(name) + '\n' + store::textKey(group);
}

}  // namespace orv::commands::compare
