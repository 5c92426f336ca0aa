#include "cli/Interrupts.h"

#include <csignal>

namespace orv::cli {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t interrupted = 0;
volatile std::sig_atomic_t caught = 0;

void handleBy(void (*handler)(int)) {
  for (const int signal : kSignals) {
    if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
  caught = handler != SIG_DFL;
}

void onInterrupt(int /*signal*/) {
  interrupted = 1;
  handleBy(SIG_DFL);
}

}  // namespace

Interrupts::Interrupts() {
  interrupted = 0;
  handleBy(onInterrupt);
}

Interrupts::~Interrupts() {
  handleBy(SIG_DFL);
}

bool Interrupts::happened() {
  return interrupted != 0;
}

InterruptsEnd::InterruptsEnd() : wereCaught_(caught != 0) {
  handleBy(SIG_DFL);
}

InterruptsEnd::~InterruptsEnd() {
  if (wereCaught_) handleBy(onInterrupt);
}

}  // namespace orv::cli
