// What every verb works with.
#pragma once

#include "cli/CliUserInterface.h"
#include "commands/Session.h"

namespace orv::cli {

struct Console {
  CliUserInterface ui;
  commands::Session session{ui};
};

}  // namespace orv::cli
