#include "cli/PasswordPrompt.h"

#include <termios.h>
#include <unistd.h>

#include <array>
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
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &action, &former_[i]);
    termios hidden = before;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    hidden.c_lflag |= ECHONL;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
  }
  ~HiddenInput() {
    showInput();
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &former_[i], nullptr);
  }
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

 private:
  static constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};
  std::array<struct sigaction, kSignals.size()> former_{};
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
