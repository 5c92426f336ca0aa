#pragma once

#include <string>

namespace orv::cli {

/// Asks on the terminal for a password, which is not shown while it is typed.
std::string askForPassword();

}  // namespace orv::cli
