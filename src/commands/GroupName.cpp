#include "commands/GroupName.h"

#include "model/Text.h"

namespace orv::commands {

bool isUnreservedGroupName(const std::string& name) {
  const std::string upper = upperCase(name);
  return !upper.empty() && !upper.starts_with("TARVEN") && !upper.starts_with("REMOVED") &&
         !upper.starts_with("IGDB");
}

void GroupName::settle(std::string name) {
  remembered_ = std::move(name);
  settled_ = true;
}

std::optional<std::string> GroupName::choose() {
  while (!settled_) {
    std::string name = session_.ui.input(
        {"Supply a new groupname for all of these records:", kProductName, remembered_});
    if (name.empty()) return std::nullopt;
    if (mayBeUsed(name)) {
      settle(std::move(name));
    } else {
      session_.ui.message(MessageKind::critical, name + " is not a valid group name.",
                          kProductName);
    }
  }
  return remembered_;
}

bool GroupName::mayBeUsed(const std::string& name) const {
  return !session_.strictGroupNames || isUnreservedGroupName(name);
}

}  // namespace orv::commands
