#include "commands/GroupName.h"

#include "commands/RecordNames.h"
#include "database/Lookups.h"
#include "model/Text.h"

namespace orv::commands {

namespace {

/// The groups of a database that records may be put into.
std::vector<std::string> usableGroups(store::Connection& database, bool strict) {
  std::vector<std::string> names = database::GroupNames(database);
  std::erase_if(names, [&](const std::string& name) {
    return name.empty() || !groupNameRefusal(name, strict).empty();
  });
  return names;
}

}  // namespace

bool isUnreservedGroupName(const std::string& name) {
  const std::string upper = upperCase(name);
  return !upper.empty() && !upper.starts_with("TARVEN") && !upper.starts_with("REMOVED") &&
         !upper.starts_with("IGDB");
}

std::string groupNameRefusal(const std::string& name, bool strict) {
  const std::string refusal = name + " is not a valid group name.";
  if (strict && !isUnreservedGroupName(name)) return refusal;
  return hasApostrophe(name) ? refusal + "\n" + apostropheRefusal("group", name) : std::string();
}

std::optional<std::string> groupOfSource(const sources::datasource& recordSet) {
  const auto database = recordSet.Parent();
  const bool isIgdb = database && database->DataType() == sources::DataType::igdb;
  return isIgdb ? std::optional<std::string>("IGDB") : std::nullopt;
}

void GroupName::settle(std::string name) {
  remembered_ = std::move(name);
  settled_ = true;
}

std::optional<std::string> GroupName::choose() {
  std::vector<std::string> groups;
  if (!settled_) groups = usableGroups(destination_, session_.strictGroupNames);
  while (!settled_) {
    std::string name = session_.ui.input(
        {"Supply a new groupname for all of these records:", kProductName, remembered_,
         "The group that the records are put into. Names that begin with TARVEN, REMOVED or IGDB "
         "are reserved.",
         false, groups});
    if (name.empty()) return std::nullopt;
    const std::string refusal = groupNameRefusal(name, session_.strictGroupNames);
    if (refusal.empty()) {
      settle(std::move(name));
    } else {
      session_.ui.message(MessageKind::critical, refusal, kProductName);
    }
  }
  return remembered_;
}

}  // namespace orv::commands
