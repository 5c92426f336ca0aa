#include "store/jet/file/LoggedFile.h"

#include <cstring>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/file/LogRecovery.h"

namespace orv::store::jet {

LoggedFile::LoggedFile(std::unique_ptr<File> file, std::string path)
    : path_(std::move(path)), file_(std::move(file)), locks_(*file_, path_) {}

void LoggedFile::keepLog() {
  seen_ = file_->status();
  log_.emplace(path_, pageSize_);
  // Among several who have the file open the log says how far its commits are in the database.
  // Whoever comes first believes only what he compares: the power may have gone since.
  recoveryIsDue_ = locks_.enterAlone();
  static_cast<void>(enterShared());
  leaveShared();
  locks_.joinOthers();
}

LoggedFile::~LoggedFile() {
  try {
    if (log_ && !recoveryIsDue_ && locks_.isLast() && isOwnLogDone()) {
      file_->sync();
      log_->remove();
    }
  } catch (const Error&) {
    // A log that stays behind is looked at by whoever opens the file next.
  }
}

/// Whether the log can go. Beside a file that has taken this one's place there may be that one's.
bool LoggedFile::isOwnLogDone() {
  const Log::Found found = log_->look();
  if (found == Log::Found::sound && !log_->state().busy) {
    return !isReplaced() || log_->counter().origin == counter_.origin;
  }
  return found == Log::Found::unused && !isReplaced();
}

// Reading -----------------------------------------------------------------------------------

bool LoggedFile::enterShared() {
  if (!log_) {
    return false;
  }
  locks_.enterShared();
  try {
    return noticeChanges();
  } catch (const Error&) {
    locks_.leaveShared();
    throw;
  }
}

void LoggedFile::leaveShared() {
  if (log_) {
    locks_.leaveShared();
  }
}

bool LoggedFile::recoverIfDue() {
  return recoveryIsDue_ && noticeChanges();
}

bool LoggedFile::isReplaced() const {
  const auto status = FileSystem::current().status(path_);
  return log_ && status && !status->isSameFile(seen_);
}

FileStatus LoggedFile::statusAtPath() const {
  const auto status = FileSystem::current().status(path_);
  if (!status || !status->isSameFile(seen_)) {
    throw Error(kStoreFailure,
                "'" + path_ + "' has been " +
                    (status ? "replaced by another file" : "deleted or moved") +
                    " since it was opened, and nothing can be read from it or saved in it any "
                    "more. Open " +
                    (status ? "the new file." : "it where it is now, or a copy of it."));
  }
  return *status;
}

bool LoggedFile::noticeChanges() {
  FileStatus now = statusAtPath();
  const Log::Found found = log_->look();
  if (found == Log::Found::foreign) {
    refuseForeignLog();
  }
  if (found != Log::Found::sound) {
    recoveryIsDue_ = false;
  } else if (recoveryIsDue_ || log_->state().busy) {
    recover();
    now = statusAtPath();
  }
  const bool isChanged =
      log_->counter() != counter_ || now.size != seen_.size || now.modified != seen_.modified;
  counter_ = log_->counter();
  seen_ = now;
  return isChanged;
}

// Recovery ----------------------------------------------------------------------------------

void LoggedFile::recover() {
  if (file_->readOnly()) {
    recoverAlone();
    return;
  }
  // Two that both hold the lock shared would wait for each other: begin anew.
  locks_.leaveShared();
  try {
    locks_.enterExclusive();
    if (log_->look() == Log::Found::sound && (recoveryIsDue_ || log_->state().busy)) {
      recoverAlone();
    }
  } catch (const Error&) {
    locks_.leaveExclusive();
    throw;
  }
  locks_.leaveExclusive();
}

void LoggedFile::recoverAlone() {
  const bool canWrite = !file_->readOnly() && !log_->readOnly() && seen_.links == 1;
  LogRecovery recovery(*log_, *file_, pageSize_);
  recoveredCompanion_ = log_->companion();
  const auto outcome = recovery.compare();
  if (outcome == LogRecovery::Outcome::foreign) {
    refuseForeignLog();
  }
  if (canWrite) {
    if (outcome == LogRecovery::Outcome::missing) {
      recovery.redo();
    } else {
      file_->sync();
    }
    log_->beginAnew(file_->status());
  } else if (outcome == LogRecovery::Outcome::missing) {
    throw Error(kStoreFailure,
                "The last change of '" + path_ +
                    "' was cut short when a program or the system "
                    "stopped. What is missing stands in '" +
                    log_->path() + "', but " +
                    (seen_.links > 1 ? "the database has a second name (a hard link)"
                                     : "here these files cannot be written") +
                    ". Copy both into one folder elsewhere and open the copy, which completes "
                    "it.");
  }
  recoveryIsDue_ = false;
}

void LoggedFile::refuseForeignLog() {
  std::string kept = "Move that file away";
  if (!file_->readOnly()) {
    try {
      kept = "The log is kept as '" + log_->setAside() + "'";
    } catch (const Error&) {  // Where nothing can be renamed, the user has to.
    }
  }
  throw Error(kStoreFailure,
              "'" + log_->path() + "' is not the log of '" + path_ +
                  "' as it is now: the database has been restored, replaced or changed by another "
                  "program since the log was written, and has not been touched. " +
                  kept + ". Run 'orv check' on the database, then open it again.");
}

// Writing -----------------------------------------------------------------------------------

std::string LoggedFile::whyReadOnly() const {
  if (file_->readOnly()) {
    return "'" + path_ +
           "' cannot be changed: the file is read-only. Give yourself permission to write it, or "
           "work on a copy.";
  }
  if (!hasOtherNames()) return {};
  return "'" + path_ + "' has " + std::to_string(seen_.links) +
         " names (hard links), and is only read: a program that came by another name would not see "
         "the log of its changes. Remove the other names, or work on a copy.";
}

void LoggedFile::enterWriter() {
  if (log_) {
    locks_.enterWriter();
  }
}

void LoggedFile::leaveWriter() {
  if (log_) {
    locks_.leaveWriter();
  }
}

void LoggedFile::prepareToWrite() {
  if (!log_) {
    return;
  }
  if (hasOtherNames()) throw Error(kReadOnlyStore, whyReadOnly());
  if (counter_.origin != 0) {
    return;
  }
  locks_.enterExclusive();
  try {
    file_->sync();
    log_->begin(seen_);
    counter_ = log_->counter();
  } catch (const Error& error) {
    locks_.leaveExclusive();
    throw Error(kStoreFailure, "'" + path_ + "' cannot be changed without a log beside it: " +
                                   error.description() +
                                   " See that its folder can be written, or work on a copy.");
  }
  locks_.leaveExclusive();
}

void LoggedFile::commit(PageNumber pagesBefore, PageNumber pagesAfter,
                        const std::vector<LoggedPage>& pages, std::uint64_t companion) {
  if (!log_) {
    for (const LoggedPage& page : pages) {
      file_->write(std::uint64_t{page.number} * pageSize_, page.after, pageSize_);
    }
    return;
  }
  locks_.enterExclusive();
  try {
    refuseForeignChange(pages);
    const LogState& state = log_->state();
    if (log_->isLong() || state.databaseSize != seen_.size ||
        state.databaseModified != seen_.modified) {
      file_->sync();
      log_->beginAnew(seen_);
    }
    writeDurably(pagesBefore, pagesAfter, pages, companion);
  } catch (const Error&) {
    locks_.leaveExclusive();
    throw;
  }
  locks_.leaveExclusive();
}

void LoggedFile::endLog() {
  locks_.enterExclusive();
  try {
    refuseChanged();
    file_->sync();
    log_->remove();
    counter_ = {};
  } catch (const Error&) {
    locks_.leaveExclusive();
    throw;
  }
  locks_.leaveExclusive();
}

void LoggedFile::refuseChanged() {
  refuseForeignChange({});
}

void LoggedFile::refuseForeignChange(const std::vector<LoggedPage>& pages) {
  const FileStatus now = statusAtPath();
  bool isChanged = now.size != seen_.size || now.modified != seen_.modified;
  Bytes there(pageSize_);
  for (const LoggedPage& page : pages) {
    if (page.before != nullptr && !isChanged) {
      file_->read(std::uint64_t{page.number} * pageSize_, there.data(), pageSize_);
      isChanged = std::memcmp(there.data(), page.before, pageSize_) != 0;
    }
  }
  if (isChanged) {
    seen_.modified = -1;  // so that the next reading takes everything for new
    throw Error(kStoreFailure, "'" + path_ +
                                   "' was changed by another program in this moment, and nothing "
                                   "was saved. Close it there, then try again.");
  }
}

void LoggedFile::writeDurably(PageNumber pagesBefore, PageNumber pagesAfter,
                              const std::vector<LoggedPage>& pages, std::uint64_t companion) {
  const std::vector<LoggedPage>* overwritten = nullptr;
  try {
    log_->append(pagesBefore, pagesAfter, pages, companion);
    overwritten = &pages;
    for (const LoggedPage& page : pages) {
      file_->write(std::uint64_t{page.number} * pageSize_, page.after, pageSize_);
    }
  } catch (const Error&) {
    takeBack(seen_.size, overwritten);
    throw;
  }
  try {
    seen_ = file_->status();
    log_->finish(seen_);
    counter_ = log_->counter();
  } catch (const Error&) {
    recoveryIsDue_ = true;  // The commit stays; what the others are told of it comes later.
  }
}

/// Undoes a commit that failed. Should this fail too, the commit stays in the log, and before
/// anything else is read or written it is found there, or not, and completed.
void LoggedFile::takeBack(std::uint64_t size, const std::vector<LoggedPage>* overwritten) {
  recoveryIsDue_ = true;
  try {
    if (overwritten != nullptr) {
      for (const LoggedPage& page : *overwritten) {
        if (page.before != nullptr) {
          file_->write(std::uint64_t{page.number} * pageSize_, page.before, pageSize_);
        }
      }
      file_->truncate(size);
      file_->sync();
    }
    log_->withdraw();
    seen_ = file_->status();
    recoveryIsDue_ = false;
  } catch (const Error&) {
  }
}

}  // namespace orv::store::jet
