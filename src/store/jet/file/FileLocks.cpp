#include "store/jet/file/FileLocks.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/Waiting.h"

namespace orv::store::jet {
namespace {

/// A writer may think for long, and who waits should be told; readers have soon finished.
std::chrono::seconds patienceFor(LockKind kind) {
  const bool isReading = kind == LockKind::readers || kind == LockKind::queue;
  return std::chrono::seconds(isReading ? 30 : 3);
}

// Between two tries; a writer leaves the lock free for short moments only.
constexpr auto kLongestPause = std::chrono::milliseconds(4);
/// Nobody is told of a shorter waiting.
constexpr auto kMoment = std::chrono::milliseconds(150);

}  // namespace

void FileLocks::wait(LockKind kind, bool exclusive) {
  const auto start = std::chrono::steady_clock::now();
  auto pause = std::chrono::microseconds(50);
  Waiting waiting;
  while (!file_.tryLock(kind, exclusive)) {
    const auto waited = std::chrono::steady_clock::now() - start;
    const bool isPatient = waited < patienceFor(kind);
    const auto holder = [&] { return "'" + path_ + "' is in use by " + file_.lockHolder(kind); };
    if (!isPatient || (waited > kMoment && !waiting.goesOn(holder))) {
      throw Error(kStoreFailure, holder() +
                                     ". Wait until it has finished or close the file there, then "
                                     "try again.");
    }
    std::this_thread::sleep_for(pause);
    pause = std::min<std::chrono::microseconds>(pause * 2, kLongestPause);
  }
}

void FileLocks::waitInLine(LockKind line, LockKind kind, bool exclusive) {
  wait(line, exclusive);
  try {
    wait(kind, exclusive);
  } catch (const Error&) {
    file_.unlock(line);
    throw;
  }
}

void FileLocks::enterShared() {
  waitInLine(LockKind::queue, LockKind::readers, false);
  file_.unlock(LockKind::queue);
}

void FileLocks::enterExclusive() {
  waitInLine(LockKind::queue, LockKind::readers, true);
}

void FileLocks::leaveExclusive() {
  file_.tryLock(LockKind::readers, false);
  file_.unlock(LockKind::queue);
}

void FileLocks::enterWriter() {
  waitInLine(LockKind::turn, LockKind::writer, true);
  file_.unlock(LockKind::turn);
}

bool FileLocks::enterAlone() {
  // Who opens a file for reading only cannot lock it for himself.
  if (file_.readOnly() ? file_.isFree(LockKind::presence)
                       : file_.tryLock(LockKind::presence, true)) {
    return true;
  }
  joinOthers();
  return false;
}

void FileLocks::joinOthers() {
  wait(LockKind::presence, false);
}

bool FileLocks::isLast() {
  return !file_.readOnly() && file_.tryLock(LockKind::presence, true);
}

}  // namespace orv::store::jet
