// The last catch of a command.
#pragma once

#include <exception>

#include "commands/ErrorText.h"
#include "commands/UserInterface.h"

namespace orv::app {

/// Runs the handler of a menu item, and shows an error that nobody expected.
template <class Handler>
void guarded(commands::UserInterface& ui, const Handler& handler) {
  try {
    handler();
  } catch (const std::exception& error) {
    ui.message(commands::MessageKind::critical,
               "An unexpected error occured: " + commands::describe(error), commands::kProductName);
  }
}

}  // namespace orv::app
