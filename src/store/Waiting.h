// What is done while another program holds a file.
#pragma once

#include <functional>
#include <string>

namespace orv::store {

/// Somebody to be told that the store waits for a file, so that a window stays alive meanwhile.
/// Must not use the store.
class Waiter {
 public:
  virtual ~Waiter() = default;

  /// Called again and again while the store waits, for more than a moment. `holder` says what is
  /// waited for: "'data.mdb' is in use by orv (process 123)". False ends the waiting, as a failure.
  virtual bool wait(const std::string& holder) = 0;
  /// The waiting is over.
  virtual void done() = 0;

  /// Of the process; null for none.
  static Waiter* current();
  /// It outlives its use.
  static void setCurrent(Waiter* waiter);
};

/// Tells the waiter of one waiting.
class Waiting {
 public:
  ~Waiting();
  Waiting() = default;
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;

  /// False when the user does not want to wait any longer. `holder` is asked where somebody is
  /// told.
  bool goesOn(const std::function<std::string()>& holder);
  /// Whether the store is waiting at this moment, and so must not be used.
  static bool isUnderWay();

 private:
  bool isTold_ = false;
};

}  // namespace orv::store
