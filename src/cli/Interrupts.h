// The signals that ask the program to end: from the keyboard, from another program, or because the
// terminal is closed.
#pragma once

namespace orv::cli {

/// While it lives, the first of these signals is a wish, that a long work ends after the record
/// under way; a second one ends the program as usual. Those that whoever started the program has
/// it ignore stay ignored.
class Interrupts {
 public:
  Interrupts();
  ~Interrupts();
  Interrupts(const Interrupts&) = delete;
  Interrupts& operator=(const Interrupts&) = delete;

  static bool happened();
};

/// Has `cleanUp` done when one of these signals, or a reader of the output that is gone, ends the
/// program. It is called by the handler of the signal.
void beforeSignalsEnd(void (*cleanUp)());

/// While it lives, within the above, each of these signals ends the program at once.
class InterruptsEnd {
 public:
  InterruptsEnd();
  ~InterruptsEnd();
  InterruptsEnd(const InterruptsEnd&) = delete;
  InterruptsEnd& operator=(const InterruptsEnd&) = delete;

 private:
  const bool wereCaught_;
};

}  // namespace orv::cli
