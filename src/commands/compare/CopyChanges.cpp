#include "commands/compare/CopyChanges.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <map>
#include <set>
#include <tuple>

#include "commands/ChangeHistory.h"
#include "commands/RecordReader.h"
#include "commands/compare/Pairing.h"
#include "errors/Counted.h"

namespace orv::commands::compare {

namespace {

/// Which records those of A take the place of, and which are one with others.
std::map<std::string, KnownRecord> knownOf(const Comparison& comparison,
                                           const std::vector<std::size_t>& pairs, RecordKind kind) {
  std::map<std::string, KnownRecord> known;
  for (const std::size_t position : pairs) {
    const ComparedPair& pair = comparison.pairs[position];
    if (pair.kind != kind) continue;
    KnownRecord& record = known[pair.a.front()];
    record.parts.assign(pair.a.begin() + 1, pair.a.end());
    if (pair.state == State::changed) record.replaces = recordNumber(pair.b.front());
  }
  return known;
}

}  // namespace

Copyable copyablePairs(const Comparison& comparison, const std::string& group) {
  Copyable copyable;
  std::set<std::pair<RecordKind, std::string>> added;
  for (std::size_t i = 0; i < comparison.pairs.size(); ++i) {
    const ComparedPair& pair = comparison.pairs[i];
    if (pair.state != State::removed && pair.state != State::changed) continue;
    const auto& place = group.empty() ? groupOf(pair) : group;
    if (pair.isWithoutData) {
      copyable.withoutData.push_back(pair.name);
    } else if (pair.isAmbiguous) {
      copyable.ambiguous.push_back(pair.name);
    } else if (pair.state == State::removed && pair.kind != RecordKind::shadings &&
               !added.emplace(pair.kind, nameKey(pair.name, place)).second) {
      copyable.clashing.push_back(pair.name);
    } else {
      copyable.pairs.push_back(i);
    }
  }
  return copyable;
}

std::vector<std::string> Copyable::remarks() const {
  std::vector<std::string> told;
  const auto tell = [&](const char* why, const std::vector<std::string>& names) {
    if (!names.empty()) told.push_back(fmt::format("{}: {}.", why, fmt::join(names, ", ")));
  };
  tell(
      "Not copied, since there are several records of this name, of which nobody knows which "
      "would be replaced (of those in other groups --group tells)",
      ambiguous);
  tell("Not copied, since the source has others of this name, and a group has one", clashing);
  tell("Not copied, since there are data at no angle", withoutData);
  return told;
}

const std::string& groupOf(const ComparedPair& pair) {
  return pair.groupA.empty() ? pair.groupB : pair.groupA;
}

PasteResult copyPairs(Session& session, const std::shared_ptr<sources::datasource>& a,
                      const std::shared_ptr<sources::datasource>& b, const Comparison& comparison,
                      const std::vector<std::size_t>& pairs, PasteOptions options,
                      const EachResult& each) {
  // What is only in A replaces nothing, whatever the destination takes for the same name.
  std::map<std::tuple<RecordKind, std::string, IfThere>, std::vector<std::string>> byGroup;
  for (const std::size_t position : pairs) {
    const ComparedPair& pair = comparison.pairs[position];
    const auto& group = options.group.empty() ? groupOf(pair) : options.group;
    const bool isThere = pair.state == State::changed;
    byGroup[{pair.kind, group, isThere ? IfThere::replace : IfThere::fail}].push_back(
        pair.a.front());
  }
  std::optional<HistoryScope> history;
  if (b->ADOConnection()) {
    history.emplace(session.ui, *b->ADOConnection(),
                    "Copy what differs of " + counted(pairs.size(), "record"));
  }
  PasteResult total;
  for (const auto& [place, identifiers] : byGroup) {
    const auto& [kind, group, ifThere] = place;
    options.group = group;
    options.ifThere = ifThere;
    options.known = knownOf(comparison, pairs, kind);
    const PasteResult result =
        pasteRecords(session, sources::RecordSelection::of(partOf(a, kind), identifiers),
                     partOf(b, kind), options);
    each(result);
    total.add(result);
    if (result.refused || result.cancelled) break;
  }
  return total;
}

}  // namespace orv::commands::compare
