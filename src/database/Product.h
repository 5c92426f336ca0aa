// The names under which the program speaks of itself.
#pragma once

namespace orv::database {

/// Title of most messages, and the source of the errors that the database layer raises.
inline constexpr const char* kProductName = "ORV database manager";
/// Short title, used by the questions of pane insertion and of deletion, and in settings.
inline constexpr const char* kApplicationTitle = "ORV";
/// The text of the program's flag for being seen in the task list. The second question of pane
/// insertion has it as its caption.
inline constexpr const char* kTaskVisible = "True";

}  // namespace orv::database
