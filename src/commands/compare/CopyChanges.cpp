#include "commands/compare/CopyChanges.h"

#include <map>
#include <utility>

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
  std::map<std::pair<RecordKind, std::string>, std::vector<std::string>> byGroup;
  for (const std::size_t position : pairs) {
    const ComparedPair& pair = comparison.pairs[position];
    auto& identifiers = byGroup[{pair.kind, options.group.empty() ? groupOf(pair) : options.group}];
    identifiers.insert(identifiers.end(), pair.a.begin(), pair.a.end());
  }
  options.ifThere = IfThere::replace;
  std::optional<HistoryScope> history;
  if (b->ADOConnection()) {
    history.emplace(session.ui, *b->ADOConnection(),
                    "Copy what differs of " + std::to_string(pairs.size()) + " records");
  }
  PasteResult total;
  for (const auto& [place, identifiers] : byGroup) {
    const auto& [kind, group] = place;
    options.group = group;
    const PasteResult result =
        pasteRecords(session, selectionOf(partOf(a, kind), identifiers), partOf(b, kind), options);
    each(result);
    total.add(result);
    if (result.refused || result.cancelled) break;
  }
  return total;
}

}  // namespace orv::commands::compare
