// The bytes of a log file.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/file/Bytes.h"

namespace orv::store::jet {

/// What a disk writes whole or not at all; a page is compared in pieces of this size.
inline constexpr std::size_t kPieceSize = 512;

/// A checksum that any torn or missing write changes. `bytes` are whole words of 8.
std::uint64_t checksumOf(std::span<const std::uint8_t> bytes);

/// Tells one commit from another in any log of any file: who keeps something that was read
/// compares it with that of now.
struct LogCounter {
  std::uint64_t origin = 0;  ///< a random number of this log file; 0: there is no log
  std::uint64_t number = 0;  ///< grows with each commit
  bool operator==(const LogCounter&) const = default;
};

/// The first piece of a log. It changes only when the log begins anew.
struct LogHeader {
  std::uint32_t pageSize = 0;
  std::uint64_t origin = 0;
  std::uint64_t generation = 0;  ///< a random number: records of before the beginning have another
  std::uint64_t number = 0;      ///< of the last commit before the beginning

  std::array<std::uint8_t, kPieceSize> encode() const;
  /// None when these bytes are no header.
  static std::optional<LogHeader> decode(std::span<const std::uint8_t> bytes);
};

/// The second piece of a log: how far its commits are in the database. It holds as long as the
/// system runs, and means nothing after a loss of power, since nobody waits for it.
struct LogState {
  std::uint64_t generation = 0;  ///< that of the header, or the state means nothing
  std::uint64_t number = 0;      ///< of the last commit that is in the database
  std::uint64_t end = 0;         ///< where the next record goes
  bool busy = false;             ///< a commit has begun; whoever sees it has outlived its program
  // The database as it was after the last commit: else another program has changed it since.
  std::uint64_t databaseSize = 0;
  std::int64_t databaseModified = 0;

  std::array<std::uint8_t, kPieceSize> encode() const;
  static LogState decode(std::span<const std::uint8_t> bytes);
};

inline constexpr std::uint64_t kLogRecords = 2 * kPieceSize;  ///< where the first record stands

/// What one commit does to one page. Bytes are as the file has them.
struct LoggedPage {
  PageNumber number;
  const std::uint8_t* before;  ///< null for a page that the commit adds to the file
  const std::uint8_t* after;
};

/// A record: one commit. It takes a whole number of pieces. `companion` is how long a file beside
/// the database, for which the commit does not wait, had become for it; 0 where there is none.
///
/// Layout, little-endian: the fields of the head, `checksum` last; then for each page u32 number,
/// u32 zero, the u64 checksum of each piece of it before, and the page as it is after.
struct LogRecord {
  struct Head {
    std::uint32_t pages = 0;
    std::uint64_t generation = 0;
    std::uint64_t number = 0;
    std::uint32_t pageCountBefore = 0;  ///< of the database
    std::uint32_t pageCountAfter = 0;
    std::uint64_t size = 0;  ///< of the record, in bytes
    std::uint64_t companion = 0;
    std::uint64_t checksum = 0;
  };
  static constexpr std::size_t kHeadSize = 64;

  /// A page of a record that was read.
  struct Page {
    PageNumber number;
    std::span<const std::uint8_t> checksumsBefore;  ///< u64 each
    std::span<const std::uint8_t> after;
  };

  static std::uint64_t sizeFor(std::size_t pages, std::size_t pageSize);
  static Bytes encode(Head head, std::span<const LoggedPage> pages, std::size_t pageSize);

  /// None when these bytes are no head of a record that can be; the record may be torn all the
  /// same.
  static std::optional<Head> decodeHead(std::span<const std::uint8_t> bytes, std::size_t pageSize);
  /// The pages of a whole record; none when it is torn.
  static std::optional<std::vector<Page>> decode(std::span<const std::uint8_t> record,
                                                 const Head& head, std::size_t pageSize);
};

}  // namespace orv::store::jet
