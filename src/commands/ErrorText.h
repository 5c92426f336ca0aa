// What a user is told of an error.
#pragma once

#include <exception>
#include <string>

namespace orv::commands {

/// The error's description. Where that is empty the explanation stands in the error's source, and
/// where that is empty too the error's number says what happened. The place, where there is one,
/// follows on a line of its own.
std::string describe(const std::exception& error);

/// Whether it says that a database file is damaged.
bool isDamage(const std::exception& error);

}  // namespace orv::commands
