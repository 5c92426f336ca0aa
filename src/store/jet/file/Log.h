// The redo log: what commits put into pages, on the disk before the database is.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "store/jet/file/File.h"
#include "store/jet/file/LogFormat.h"

namespace orv::store::jet {

/// A file beside the database ("NAME.mdb-log"). A commit appends a record of the pages that it
/// changes, waits until that is on the disk, and then writes them into the database without
/// waiting. When the log has grown long, and when the last who has the database open closes it,
/// the database is waited for, and the log begins anew or is removed.
///
/// So a log found beside a database has every commit that may not be wholly in the database;
/// LogRecovery brings them there. A record that is torn is of a commit that never returned.
///
/// Whoever calls append() to finish() holds the exclusive locks of the file; look() needs the
/// shared one.
class Log {
 public:
  Log(const std::string& databasePath, std::size_t pageSize);

  const std::string& path() const { return path_; }

  enum class Found {
    absent,
    unused,   ///< none was ever begun, or only its beginning was
    sound,    ///< with any number of records
    foreign,  ///< something that is no log of such a database
  };
  /// Looks at the log as it is now. Raises kStoreFailure where something else has its name.
  Found look();

  // As of the last look, or of what was done since:
  LogCounter counter() const;
  const LogState& state() const { return state_; }
  bool readOnly() const { return file_->readOnly(); }
  /// Whether it is time to begin anew.
  bool isLong() const { return state_.end > kLongest; }

  /// Makes the file, with the owner and permissions of the database, unless it is there, and
  /// begins it where it was not begun. What is in the database now is on the disk.
  void begin(const FileStatus& database);
  /// Forgets all records. What they put into the database is on the disk, and is that of
  /// `database`. Commits are counted on, so that whoever reads looks anew.
  void beginAnew(const FileStatus& database);

  /// Appends a commit and waits for the disk; when this returns, the commit stays.
  void append(PageNumber pagesBefore, PageNumber pagesAfter, const std::vector<LoggedPage>& pages,
              std::uint64_t companion = 0);
  /// Takes the record that was appended, whole or in part, back.
  void withdraw();
  /// Tells everyone that the commit is in the database, which is now as `database` says.
  void finish(const FileStatus& database);

  /// Calls `take` with each whole record, in order, until one is torn.
  void forEachRecord(
      const std::function<void(const LogRecord::Head&, const std::vector<LogRecord::Page>&)>& take);

  /// That of the last of these that had one.
  std::uint64_t companion() const { return companion_; }

  /// Removes the file.
  void remove();
  /// Gives the file a name under which nothing takes it for a log of this database, and returns
  /// that.
  std::string setAside();

 private:
  static constexpr std::uint64_t kLongest = 8 << 20;
  static constexpr std::uint64_t kStep = 1 << 20;  ///< it is grown by

  bool isOpen();
  void writeState();
  void growTo(std::uint64_t size);

  std::string path_;
  std::string databasePath_;
  std::size_t pageSize_;
  std::unique_ptr<File> file_;
  LogHeader header_;
  LogState state_;
  std::uint64_t size_ = 0;      ///< of the file
  std::uint64_t appended_ = 0;  ///< size of the record that is not finished yet
  std::uint64_t companion_ = 0;
};

}  // namespace orv::store::jet
