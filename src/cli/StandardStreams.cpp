#include "cli/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <iostream>

namespace orv::cli {

void occupyClosedStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // The lowest free number is given, which is this one, as those below it are taken.
    if (fcntl(stream, F_GETFD) == -1) {
      open("/dev/null", stream == STDERR_FILENO ? O_WRONLY : O_RDONLY);
    }
  }
}

bool finishOutput() {
  return static_cast<bool>(std::cout.flush());
}

}  // namespace orv::cli
