// What every verb works with.
#pragma once

#include "cli/CliUserInterface.h"
#include "cli/StandardInput.h"
#include "commands/Session.h"

namespace orv::cli {

struct Console {
  CliUserInterface ui;
  commands::Session session{ui};
  StandardInput input;
};

}  // namespace orv::cli
