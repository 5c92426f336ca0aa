#include "cli/PasswordPrompt.h"

#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

namespace orv::cli {

namespace {

termios before;

void showInput() {
  tcsetattr(STDIN_FILENO, TCSANOW, &before);
}

/// Whoever gives up finds the terminal as it was.
void onInterrupt(int signal) {
  showInput();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

/// While it lives, the terminal does not show what is typed.
class HiddenInput {
 public:
  HiddenInput() {
    tcgetattr(STDIN_FILENO, &before);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, onInterrupt);
    termios hidden = before;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    hidden.c_lflag |= ECHONL;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
  }
  ~HiddenInput() {
    showInput();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_DFL);
  }
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;
};

}  // namespace

std::string askForPassword() {
  const HiddenInput hidden;  // before the prompt, so that nothing typed after it is lost
  std::cerr << "Password: " << std::flush;
  std::string password;
  std::getline(std::cin, password);
  return password;
}

}  // namespace orv::cli
