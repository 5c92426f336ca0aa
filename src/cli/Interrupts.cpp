#include "cli/Interrupts.h"

#include <csignal>

namespace orv::cli {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t interrupted = 0;
volatile std::sig_atomic_t caught = 0;

void (*atEnd)() = [] {};

/// What has to be undone is undone, and the signal does what it does to others.
void onEnd(int signal) {
  atEnd();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void handle(int signal, void (*handler)(int)) {
  if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
}

void handleBy(void (*handler)(int)) {
  for (const int signal : kSignals) handle(signal, handler);
  caught = handler != onEnd;
}

void onInterrupt(int /*signal*/) {
  interrupted = 1;
  handleBy(onEnd);
}

}  // namespace

Interrupts::Interrupts() {
  interrupted = 0;
  handleBy(onInterrupt);
}

Interrupts::~Interrupts() {
  handleBy(onEnd);
}

void beforeSignalsEnd(void (*cleanUp)()) {
  atEnd = cleanUp;
  handleBy(onEnd);
  handle(SIGPIPE, onEnd);
}

bool Interrupts::happened() {
  return interrupted != 0;
}

InterruptsEnd::InterruptsEnd() : wereCaught_(caught != 0) {
  handleBy(onEnd);
}

InterruptsEnd::~InterruptsEnd() {
  if (wereCaught_) handleBy(onInterrupt);
}

}  // namespace orv::cli
