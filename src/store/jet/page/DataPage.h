// A data page: a table of row offsets that grows down from the header, and rows that grow up
// from the page's end, each ending where the one before it begins.
#pragma once

#include <cstdint>
#include <span>

#include "store/jet/file/Bytes.h"
#include "store/jet/page/Format.h"

namespace orv::store::jet {

/// Rows are numbered in one byte.
inline constexpr std::uint16_t kMaxRowsOnPage = 255;
/// "LVAL", in the place of the owner: the page holds parts of long values.
inline constexpr std::uint32_t kLongValueOwner = 0x4c41564c;

/// What a row of a data page is.
enum class SlotKind {
  row,      ///< a row
  pointer,  ///< a pointer to the row's content on another page
  hidden,   ///< such content: only reached by its pointer
  dead,     ///< a deleted row
};

struct Slot {
  SlotKind kind;
  std::size_t offset;
  std::size_t length;
};

/// Reads a data page. Raises kCorruptFile when it is none, or when offsets are out of order.
class DataPage {
 public:
  /// One without rows.
  DataPage() = default;
  DataPage(const Format& format, ByteView page);

  std::uint16_t rowCount() const { return rowCount_; }
  std::uint32_t owner() const { return page_.u32(format_->data.owner); }
  std::size_t freeSpace() const { return page_.u16(format_->data.freeSpace); }
  Slot slot(std::uint16_t row) const;
  std::span<const std::uint8_t> bytes(std::uint16_t row) const;

  /// Whether another row of `length` bytes, with its entry in the table, has room.
  bool takes(std::size_t length) const { return hasRoom(length + 2); }
  /// Whether there is as much room as that for more rows.
  bool hasRoom(std::size_t bytes) const {
    return freeSpace() >= bytes && rowCount_ < kMaxRowsOnPage;
  }

 private:
  const Format* format_ = nullptr;
  ByteView page_;
  std::uint16_t rowCount_ = 0;
};

/// Changes a data page in place. The page has been read through DataPage before, or made by
/// initialize().
class DataPageEditor {
 public:
  DataPageEditor(const Format& format, std::uint8_t* bytes, PageNumber page)
      : format_(format), bytes_(bytes), page_(page) {}

  void initialize(std::uint32_t owner);
  DataPage read() const { return {format_, {{bytes_, format_.pageSize}, page_}}; }

  /// Adds a row, which the page takes(), and returns its number.
  std::uint8_t add(std::span<const std::uint8_t> row, SlotKind kind = SlotKind::row);
  /// Gives a row new content (there must be room for the growth) and kind.
  void replace(std::uint8_t row, std::span<const std::uint8_t> content, SlotKind kind);
  /// Deletes a row, whose number is not used again; its bytes become free by closeGaps().
  void erase(std::uint8_t row);
  /// Moves the rows together over the bytes of deleted ones; false when no row is left.
  bool closeGaps();
  /// The bytes of a row, to be changed in place.
  std::span<std::uint8_t> rowBytes(std::uint8_t row);

 private:
  std::uint8_t* entry(std::size_t row) { return bytes_ + format_.data.rowTable + 2 * row; }

  const Format& format_;
  std::uint8_t* bytes_;
  PageNumber page_;
};

}  // namespace orv::store::jet
