// A database file with its locks and its log: reading, and commits that are whole and durable.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "store/jet/file/File.h"
#include "store/jet/file/FileLocks.h"
#include "store/jet/file/Log.h"

namespace orv::store::jet {

/// Raises kStoreFailure for failed input or output, for a file locked by another program, and for
/// a file that is no longer what it was when it was opened: deleted, replaced, or changed by a
/// program that knows nothing of these locks. All descriptions name the file.
class LoggedFile {
 public:
  /// `path` is the file's own, without links; it names the log.
  LoggedFile(std::unique_ptr<File> file, std::string path);
  ~LoggedFile();
  LoggedFile(const LoggedFile&) = delete;
  LoggedFile& operator=(const LoggedFile&) = delete;

  /// To be said before the file is changed.
  void setPageSize(std::size_t bytes) { pageSize_ = bytes; }
  /// From now on the file has a log, and takes locks. Brings commits that a crash has cut short
  /// into the database; raises kStoreFailure where that cannot be.
  void keepLog();

  const std::string& path() const { return path_; }
  bool readOnly() const { return file_->readOnly() || hasOtherNames(); }
  /// Why it cannot be changed; empty when it can.
  std::string whyReadOnly() const;
  /// Whether another file stands at the path now.
  bool isReplaced() const;
  std::uint64_t size() { return file_->size(); }
  void sync() { file_->sync(); }
  void read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) {
    file_->read(offset, bytes, length);
  }

  /// Between these no other program of ours changes the file. True when somebody has changed it
  /// since the last time, so that what was read before may be void.
  [[nodiscard]] bool enterShared();
  void leaveShared();
  /// Within these: sees to a commit that failed and could not be taken back. True as above.
  [[nodiscard]] bool recoverIfDue();
  /// Within these: whether somebody waits until this reader has finished.
  bool isWaitedFor() { return log_ && locks_.isWaitedFor(); }

  /// Between these no other program of ours begins to change the file.
  void enterWriter();
  void leaveWriter();
  /// Within these and the shared ones: raises kReadOnlyStore for a file with a second name,
  /// kStoreFailure where no log can be kept.
  void prepareToWrite();
  /// Writes pages, durably and all or none. Within the same. What a page held `before` must be
  /// what the file has. The file has `pagesBefore` pages and then `pagesAfter`.
  /// `companion` is how long a file beside it had become for that; 0 where there is none.
  void commit(PageNumber pagesBefore, PageNumber pagesAfter, const std::vector<LoggedPage>& pages,
              std::uint64_t companion = 0);
  /// How long that file had become for the last commit that was found when the log was recovered,
  /// the first time that it is asked for; else 0.
  std::uint64_t takeRecoveredCompanion() { return std::exchange(recoveredCompanion_, 0); }
  /// Within the same: brings all commits to the disk and removes the log.
  void endLog();
  /// Raises kStoreFailure where another file stands at the path, or another program has written.
  void refuseChanged();

 private:
  bool hasOtherNames() const { return log_ && seen_.links > 1; }
  bool isOwnLogDone();
  FileStatus statusAtPath() const;
  bool noticeChanges();
  void recover();
  void recoverAlone();
  [[noreturn]] void refuseForeignLog();
  void refuseForeignChange(const std::vector<LoggedPage>& pages);
  void writeDurably(PageNumber pagesBefore, PageNumber pagesAfter,
                    const std::vector<LoggedPage>& pages, std::uint64_t companion);
  void takeBack(std::uint64_t size, const std::vector<LoggedPage>* overwritten);

  std::string path_;
  std::unique_ptr<File> file_;
  FileLocks locks_;
  std::size_t pageSize_ = 0;
  std::optional<Log> log_;  ///< none for content in memory
  FileStatus seen_;         ///< of the file when it was last looked at
  LogCounter counter_;      ///< of the log then
  bool recoveryIsDue_ = false;
  std::uint64_t recoveredCompanion_ = 0;
};

}  // namespace orv::store::jet
