// What SQLite calls back, with errors carried around SQLite's C code.
#pragma once

#include <sqlite3.h>

#include <exception>
#include <utility>

namespace orv::store::sql {

/// Holds the first error that a callback raised, until whoever called SQLite raises it again.
class CallbackFailure {
 public:
  /// Runs `body`; keeps what it throws. False when it threw.
  template <class Body>
  bool guard(Body&& body) noexcept {
    try {
      std::forward<Body>(body)();
      return true;
    } catch (...) {
      if (!error_) {
        error_ = std::current_exception();
      }
      return false;
    }
  }

  void rethrow() {
    if (error_) {
      std::rethrow_exception(std::exchange(error_, nullptr));
    }
  }

 private:
  std::exception_ptr error_;
};

}  // namespace orv::store::sql
