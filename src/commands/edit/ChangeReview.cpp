#include "commands/edit/ChangeReview.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <tuple>

#include "commands/GroupName.h"
#include "commands/RecordNames.h"
#include "database/Fields.h"
#include "errors/Error.h"
#include "model/Text.h"

namespace orv::commands::edit {

const EditField& fieldNamed(const std::vector<EditField>& fields, const std::string& name) {
  return *std::ranges::find(fields, name, &EditField::name);
}

Review ChangeReview::of(const std::vector<Change>& changes) {
  review_ = {};
  for (std::size_t i = 0; i < changes.size(); ++i) lookAt(changes, i);
  std::set<std::tuple<std::int32_t, std::string, std::optional<std::int16_t>>> places;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (!places.emplace(changes[i].record, changes[i].field, changes[i].angle).second) {
      review_.refusals.push_back({i, "This field of this record is in the list already."});
    }
  }
  if (review_.isFine()) refuseDoubles(changes);
  if (review_.isFine()) review_.remarks = remarksOn(changes, set_, fields_, database_, records_);
  return review_;
}

/// A change by itself.
void ChangeReview::lookAt(const std::vector<Change>& changes, std::size_t at) {
  const Change& change = changes[at];
  const EditField& field = fieldNamed(fields_, change.field);
  store::Value present;
  try {
    present = records_.value(change.record, field, change.angle);
  } catch (const Error& error) {
    if (error.number() != kInvalidCall) throw;
    review_.refusals.push_back({at, error.description()});
    return;
  }
  if (present != change.before) {
    review_.refusals.push_back(
        {at,
         fmt::format("{} has been changed meanwhile: it is \"{}\" now, and was \"{}\".", field.name,
                     fieldText(present), fieldText(change.before)),
         present});
    return;
  }
  std::string reason = valueRefusal(field, change.after);
  if (reason.empty() && change.after.getIf<std::string>()) {
    reason = nameRefusal(field, *change.after.getIf<std::string>());
  }
  if (!reason.empty()) review_.refusals.push_back({at, reason});
}

/// Why a text is no name that records are found by.
std::string ChangeReview::nameRefusal(const EditField& field, const std::string& name) const {
  const bool isGroup = field.choices == EditSet::groups || set_ == EditSet::groups;
  if (isGroup) return groupNameRefusal(name, session_.strictGroupNames);
  const bool isSearchedFor =
      field.choices || isLookup(set_) || (field.name == "name" && set_ != EditSet::shadings);
  if (!isSearchedFor || !hasApostrophe(name)) return {};
  return apostropheRefusal(field.name, name);
}

/// All records of the set, as they are now.
std::map<std::int32_t, ChangeReview::Identity> ChangeReview::identities() {
  const SetDesign& design = designOf(set_);
  const char* groupColumn = referenceColumn(EditSet::groups, set_);
  const auto& groups = records_.names(EditSet::groups);
  std::map<std::int32_t, Identity> all;
  for (auto rows = database::openTable(database_, design.table); !rows->eof(); rows->moveNext()) {
    Identity identity{database::FieldToString(rows->value(design.nameColumn)), {}};
    if (groupColumn) {
      const auto group = groups.find(database::FieldToLong(rows->value(groupColumn)));
      if (group != groups.end()) identity.group = group->second;
    }
    all.emplace(database::FieldToLong(rows->value(design.key)), std::move(identity));
  }
  return all;
}

/// A name is there once, of panes and frames once in a group. Shadings may have one several times.
void ChangeReview::refuseDoubles(const std::vector<Change>& changes) {
  if (set_ == EditSet::shadings) return;
  const auto changesIdentity = [](const Change& change) {
    return change.field == "name" || change.field == "group";
  };
  if (std::ranges::none_of(changes, changesIdentity)) return;
  auto all = identities();
  for (const Change& change : changes) {
    if (!changesIdentity(change)) continue;
    auto& identity = all[change.record];
    (change.field == "name" ? identity.name : identity.group) = change.after.toText();
  }
  const auto keyOf = [&](const Identity& identity) {
    return std::pair(nameKey(database_, set_, identity.name),
                     nameKey(database_, EditSet::groups, identity.group));
  };
  std::map<std::pair<std::string, std::string>, std::vector<std::int32_t>> keys;
  for (const auto& [key, identity] : all) keys[keyOf(identity)].push_back(key);
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (!changesIdentity(changes[i])) continue;
    const Identity& identity = all[changes[i].record];
    const auto& same = keys[keyOf(identity)];
    const auto other =
        std::ranges::find_if(same, [&](std::int32_t key) { return key != changes[i].record; });
    if (other == same.end()) continue;
    const char* one = designOf(set_).one;
    review_.refusals.push_back(
        {i, isLookup(set_)
                ? fmt::format("There is a {} \"{}\" already ({}). Merge the two instead.", one,
                              identity.name, *other)
                : fmt::format("There would be two {}s \"{}\" in the group \"{}\" ({} and {}).", one,
                              identity.name, identity.group, changes[i].record, *other)});
  }
}

}  // namespace orv::commands::edit
