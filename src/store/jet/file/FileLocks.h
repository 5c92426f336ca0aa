// Who may read and write a file, among the programs that use this store.
#pragma once

#include <string>

#include "store/jet/file/File.h"

namespace orv::store::jet {

/// The locks of one opening of a file.
///
/// | lock     | shared                            | exclusive                                   |
/// |----------|-----------------------------------|---------------------------------------------|
/// | readers  | while reading                     | while pages are overwritten                 |
/// | queue    | for a moment, before `readers`    | while waiting for `readers` exclusive, so   |
/// |          |                                   | that no reader comes in between             |
/// | writer   |                                   | from the first change to the commit         |
/// | turn     |                                   | while waiting for `writer`, so that who has |
/// |          |                                   | just written comes after who waits          |
/// | presence | while the file is open            | while it is opened or closed by one alone   |
///
/// A lock that another holds is waited for, for some seconds; then kStoreFailure says who has it.
class FileLocks {
 public:
  FileLocks(File& file, const std::string& path) : file_(file), path_(path) {}

  void enterShared();
  void leaveShared() { file_.unlock(LockKind::readers); }
  /// From shared to exclusive, when all who read now have finished.
  void enterExclusive();
  /// From exclusive back to shared; never fails.
  void leaveExclusive();
  /// Whether somebody waits to write, or to restore the file, until this reader has finished.
  bool isWaitedFor() { return !file_.isFree(LockKind::queue); }

  void enterWriter();
  void leaveWriter() { file_.unlock(LockKind::writer); }

  /// Tells others that the file is open here; true when it is open nowhere else, which nobody can
  /// change until joinOthers().
  bool enterAlone();
  void joinOthers();
  /// Whether it is open here only; nobody can open it until this file is closed.
  bool isLast();

 private:
  void wait(LockKind kind, bool exclusive);
  /// Waits for a lock while holding the one of those who wait for it.
  void waitInLine(LockKind line, LockKind kind, bool exclusive);

  File& file_;
  const std::string& path_;
};

}  // namespace orv::store::jet
