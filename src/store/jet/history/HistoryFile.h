// The file beside a database that holds what its last changes were before.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "store/Value.h"
#include "store/jet/file/File.h"

namespace orv::store::jet {

/// One commit, or what has become of those of a work. A work is what a user sees as one change: one
/// commit or several.
struct HistoryRecord {
  enum class Kind : std::uint32_t {
    changes = 1,
    undone = 2,  ///< the work has been taken back
    redone = 3,  ///< and made again
    lost = 4,    ///< not all of the work is here, so that it cannot be taken back
    ended = 5,   ///< all commits of the work were made
  };
  Kind kind = Kind::changes;
  std::uint64_t work = 0;
  std::int64_t time = 0;  ///< seconds since 1970
  std::string title{};    ///< of the work
  Bytes changes{};        ///< as RowChangeWriter has written them
};

/// A record without its changes, and its place in the file.
struct HistoryEntry {
  HistoryRecord head;
  std::uint64_t place = 0;
  std::uint64_t size = 0;  ///< in the file
};

/// "NAME.mdb.orv-history": a header, then a record after the other. Each has checksums, so that one
/// that was cut short is not believed; the next one takes its place. When the file grows past a
/// bound, the oldest works go.
///
/// The header tells of which database the file is. One of another database, or something else, is
/// never written to: it is given another name when this database gets a history. So is one that is
/// damaged: behind its last record that can be read stands something else than a record that was
/// cut short.
///
/// Whoever calls append() holds the database's lock for writing. Raises kStoreFailure.
class HistoryFile {
 public:
  /// `identity` tells the database from others.
  HistoryFile(const std::string& databasePath, std::uint64_t identity);
  /// The bound, in bytes.
  void setLargest(std::uint64_t bytes) { largest_ = bytes; }

  const std::string& path() const { return path_; }
  enum class Found { absent, sound, foreign, damaged };
  /// What is there now.
  Found look();
  /// The records that there were at the last look, in their order.
  const std::vector<HistoryEntry>& entries() const { return entries_; }
  /// The changes of a record. Raises kCorruptFile where it is damaged.
  Bytes changes(const HistoryEntry& entry);

  /// Adds a record; with `waits` it is on the disk when this returns. False when the work of the
  /// record has grown past the bound, and is lost.
  bool append(const HistoryRecord& record, bool waits);
  /// Takes the last record out again.
  void withdraw();
  /// Returns when all that was added is on the disk.
  void sync();
  /// How long the file would be if no works had gone from it.
  std::uint64_t length() const { return gone_ + end_; }
  /// The name that a file got since the last call which could not be used; empty where none did.
  std::string takeNameOfUnusable() { return std::exchange(setAside_, {}); }

 private:
  bool open();
  void readEntries();
  bool isCutShort();
  void beginNew();
  void setAside();
  void shorten(const HistoryRecord& added);
  Bytes withoutOldest(const HistoryRecord& added);

  std::string databasePath_;
  std::string path_;
  std::uint64_t identity_;
  std::uint64_t largest_ = UINT64_MAX;
  std::unique_ptr<File> file_;
  std::vector<HistoryEntry> entries_;
  std::uint64_t end_ = 0;   ///< where the next record goes; 0 where nothing has been looked at
  std::uint64_t gone_ = 0;  ///< bytes of works that had to go
  bool isWaitedFor_ = true;
  std::string setAside_;
};

}  // namespace orv::store::jet
