#include "commands/compare/CopyChanges.h"

#include <map>
#include <tuple>

#include "commands/ChangeHistory.h"

namespace orv::commands::compare {

namespace {

sources::RecordSelection selectionOf(const std::shared_ptr<sources::datasource>& node,
                                     const std::vector<std::string>& identifiers) {
  sources::RecordSelection selection;
  selection.RecordsCount(static_cast<std::int32_t>(identifiers.size()));
  selection.DataSourcePtr(node);
  for (std::size_t i = 0; i < identifiers.size(); ++i) {
    selection.SelectedRecordID(static_cast<std::int32_t>(i + 1), identifiers[i]);
  }
  return selection;
}

}  // namespace

std::vector<std::size_t> copyablePairs(const Comparison& comparison,
                                       std::vector<std::string>& ambiguous) {
  std::vector<std::size_t> positions;
  for (std::size_t i = 0; i < comparison.pairs.size(); ++i) {
    const ComparedPair& pair = comparison.pairs[i];
    if (pair.state != State::removed && pair.state != State::changed) continue;
    if (pair.isAmbiguous) {
      ambiguous.push_back(pair.name);
    } else {
      positions.push_back(i);
    }
  }
  return positions;
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
    const IfThere ifThere = pair.state == State::removed ? IfThere::fail : IfThere::replace;
    auto& identifiers = byGroup[{pair.kind, group, ifThere}];
    identifiers.insert(identifiers.end(), pair.a.begin(), pair.a.end());
  }
  std::optional<HistoryScope> history;
  if (b->ADOConnection()) {
    history.emplace(session.ui, *b->ADOConnection(),
                    "Copy what differs of " + std::to_string(pairs.size()) + " records");
  }
  PasteResult total;
  for (const auto& [place, identifiers] : byGroup) {
    const auto& [kind, group, ifThere] = place;
    options.group = group;
    options.ifThere = ifThere;
    const PasteResult result =
        pasteRecords(session, selectionOf(partOf(a, kind), identifiers), partOf(b, kind), options);
    each(result);
    total.add(result);
    if (result.refused || result.cancelled) break;
  }
  return total;
}

}  // namespace orv::commands::compare
