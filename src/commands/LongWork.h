// The time during which a command works through many records.
#pragma once

#include <string>

#include "commands/UserInterface.h"

namespace orv::commands {

/// Shows the progress display from its making to its end, however that comes, and leaves the
/// status "Ready" behind.
class LongWork {
 public:
  LongWork(UserInterface& ui, const std::string& text) : ui_(ui) { ui_.beginProgress(text); }
  LongWork(const LongWork&) = delete;
  LongWork& operator=(const LongWork&) = delete;
  ~LongWork() {
    ui_.status("Ready");
    ui_.endProgress();
  }

  void expect(int steps) {
    total_ = steps;
    ui_.progressSteps(done_, total_);
  }
  void stepDone() { ui_.progressSteps(++done_, total_); }

 private:
  UserInterface& ui_;
  int done_ = 0;
  int total_ = 0;
};

}  // namespace orv::commands
