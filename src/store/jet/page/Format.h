// The constants of each version of the file format: all that differs between versions is here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "store/jet/file/Bytes.h"

namespace orv::store::jet {

/// First byte of a page.
enum class PageType : std::uint8_t {
  header = 0x00,
  data = 0x01,
  tableDefinition = 0x02,
  indexNode = 0x03,
  indexLeaf = 0x04,
  usageMap = 0x05,
};

/// Order in which text compares in an index: a language and a version of its rules.
struct SortOrder {
  std::uint16_t language = 1033;  ///< 1033 (0x409): "General"
  std::uint8_t version = 0;  ///< 0: as up to Access 2007; 1: as from Access 2010; Jet 3 has none
  bool jet3 = false;         ///< Jet 3's own table of codes
  bool operator==(const SortOrder&) const = default;
};

/// Offsets (in bytes, from the start of the structure named) and sizes of one format version.
struct Format {
  std::string_view name;
  std::size_t pageSize;
  bool unicodeText;  ///< text is UTF-16LE (possibly compressed), else in the file's code page
  bool writable;     ///< this store can write the version

  // Header page. From `header.masked` on, `header.maskedSize` bytes are RC4-encoded.
  struct {
    std::size_t masked, maskedSize, codePage, encodingKey, password, passwordSize, sortOrder,
        creationDate;
    bool passwordMaskedByDate;
  } header;

  // Data page.
  struct {
    std::size_t freeSpace, owner, rowCount, rowTable;
  } data;

  // Row.
  struct {
    std::size_t columnCountSize, offsetSize;  ///< size of the column count and of a variable offset
    bool jumpTable;                           ///< offsets of one byte with a table of jumps
    std::size_t maxSize;                      ///< largest row that is written
  } row;

  // Table definition: header, then blocks for indexes and columns, names, and long values.
  struct {
    std::size_t freeSpace, nextPage, pageHeader;  ///< of each page of the definition
    std::size_t length, rowCount, autoNumber, autoNumberFlag, tableType, maxColumns,
        variableColumns, columnCount, indexCount, realIndexCount, ownedPages, freePages, headerSize;
    std::size_t realIndexEntry,
        realIndexRowCount;  ///< size of a counter block; offset of the count
    std::size_t nameLengthSize;
  } definition;

  // Column block of a table definition.
  struct {
    std::size_t size, type, number, variableIndex, sortOrder, sortVersion, precision, scale, flags,
        extraFlags, fixedOffset, length;
  } column;

  // Index blocks of a table definition.
  struct {
    std::size_t realSize, realColumns, realUsageMap, realRoot, realFlags;
    std::size_t logicalSize, logicalNumber, logicalReal, logicalRelationType, logicalRelationIndex,
        logicalRelationTable, logicalCascadeUpdates, logicalCascadeDeletes, logicalType;
  } index;

  // Index page.
  struct {
    std::size_t freeSpace, owner, previous, next, tail, prefixLength, mask, entries;
  } indexPage;

  // Long values.
  std::size_t maxInlineLongValue;  ///< bytes of a memo or picture kept inside the row

  // Usage maps.
  std::size_t inlineMapBytes;  ///< bitmap bytes of a map kept in a row
  std::size_t maxFileSize;     ///< bytes
};

extern const Format kJet3;
extern const Format kJet4;

/// The format of a file by its header's first bytes (at least 32); null when it is none of ours.
/// `engineVersion` receives the version byte: 0 Jet 3, 1 Jet 4, 2 and above `.accdb`.
const Format* detectFormat(ByteView header, int& engineVersion);

inline constexpr std::size_t kMaxIndexColumns = 10;
inline constexpr std::uint16_t kNoColumn = 0xffff;

}  // namespace orv::store::jet
