// How a run ends.
#pragma once

#include <stdexcept>
#include <string>

#include "commands/CompactDatabase.h"
#include "commands/ErrorText.h"
#include "errors/Error.h"

namespace orv::cli {

enum ExitCode : int {
  kAllWell = 0,
  kRecordsFailed = 1,  ///< some records, or the one thing that was asked for, failed
  kWrongUse = 2,
  kCannotOpen = 3,  ///< a file or folder cannot be opened or is not what it is said to be, or
                    ///< standard output cannot be written
};

/// Ends the run with a message and an exit code.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
  ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

inline Failure wrongUse(const std::string& message) {
  return {kWrongUse, message};
}

/// Runs `work` on what the user typed and turns kInvalidCall into a failure with kWrongUse.
template <class Work>
auto usedRightly(Work work) {
  try {
    return work();
  } catch (const Error& error) {
    if (error.number() != kInvalidCall) throw;
    throw wrongUse(commands::describe(error));
  }
}

/// Runs `open` and turns any error of it into a failure with kCannotOpen. That the user has
/// ended the work is none.
template <class Open>
auto opening(Open open) {
  try {
    return open();
  } catch (const Failure&) {
    throw;
  } catch (const commands::Cancelled&) {
    throw;
  } catch (const std::exception& error) {
    throw Failure(kCannotOpen, commands::describe(error));
  }
}

}  // namespace orv::cli
