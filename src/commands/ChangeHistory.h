// The history of the databases that commands change.
#pragma once

#include <optional>
#include <string>

#include "commands/UserInterface.h"
#include "store/History.h"

namespace orv::commands {

/// Lets the changes of a database be kept beside it, so that they can be taken back; unless the
/// environment variable ORV_HISTORY is "off". A number there is the bound of the file, in MB. What
/// there is to say of another text there; a sentence, or empty.
std::string keepHistory(store::Connection& database);

/// What a command does to a database from its making to its end is one change to the user: it is
/// taken back as a whole. Says at the end where the history could not be written, or was begun
/// anew.
class HistoryScope {
 public:
  /// `title` says what is done: "Delete 2 panes".
  HistoryScope(UserInterface& ui, store::Connection& database, const std::string& title);
  HistoryScope(const HistoryScope&) = delete;
  HistoryScope& operator=(const HistoryScope&) = delete;
  ~HistoryScope();

 private:
  UserInterface& ui_;
  store::Connection& database_;
  std::optional<store::History::Scope> scope_;
};

}  // namespace orv::commands
