// Databases that have a password.
#pragma once

#include <functional>
#include <string>

#include "commands/Session.h"

namespace orv::commands {

/// Does work that opens the database `filename` with the session's password. Where that is refused,
/// asks for another, which becomes the session's, and does it again. False when the user gives
/// none. Raises what the work raises otherwise.
bool withPassword(Session& session, const std::string& filename, const std::function<void()>& work);

}  // namespace orv::commands
