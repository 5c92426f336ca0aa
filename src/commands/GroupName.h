// The name of the group that copied records are put into.
#pragma once

#include <optional>
#include <string>

#include "commands/Session.h"

namespace orv::commands {

/// Whether a name is not empty and none of those that are kept for the maker's own groups.
bool isUnreservedGroupName(const std::string& name);

/// Why no records can be put into a group of this name; empty when they can. Reserved names are
/// refused only when `strict`.
std::string groupNameRefusal(const std::string& name, bool strict = true);

/// The group that the records of a record set go into whoever copies them: that of the IGDB has its
/// name.
std::optional<std::string> groupOfSource(const sources::datasource& recordSet);

/// The group of the records of one paste: asked for once, then settled.
class GroupName {
 public:
  /// Both outlive this; the groups of the destination are offered.
  GroupName(Session& session, store::Connection& destination)
      : session_(session), destination_(destination) {}

  /// Settles the name without asking or checking.
  void settle(std::string name);

  /// The settled name. When there is none yet, asks until the answer may be used, and settles it;
  /// none when the user gives no name.
  std::optional<std::string> choose();

 private:
  Session& session_;
  store::Connection& destination_;
  std::string remembered_;
  bool settled_ = false;
};

}  // namespace orv::commands
