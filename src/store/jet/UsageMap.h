// Sets of pages: which pages are free, which belong to a table, which have room for rows.
#pragma once

#include <cstdint>
#include <optional>

#include "store/jet/Pager.h"
#include "store/jet/RowId.h"

namespace orv::store::jet {

/// A set of page numbers, kept in a row of a data page: as a bitmap in the row for a short span
/// of pages, or as pointers to pages of bitmaps.
class UsageMap {
 public:
  /// The map kept at `location`. Reads nothing yet.
  UsageMap(Pager& pager, RowId location) : pager_(pager), location_(location) {}

  bool contains(PageNumber page) const;
  /// The first page of the set that is not below `from`.
  std::optional<PageNumber> next(PageNumber from) const;
  /// Adds a page; turns the map into one of pointers when its span grows too long for a bitmap.
  void add(PageNumber page);
  void remove(PageNumber page);

  /// Number of bytes that a new, empty map takes in a row.
  static std::size_t initialSize(const Format& format);

 private:
  Pager& pager_;
  RowId location_;
};

/// Hands out pages of the file, by the global usage map (page 1, row 0: a set bit is a free page).
class PageAllocator {
 public:
  explicit PageAllocator(Pager& pager) : pager_(pager) {}
  /// A page for a new use: a freed one, or a new one at the end of the file. Its bytes are zero.
  PageNumber allocate();
  void release(PageNumber page);

 private:
  Pager& pager_;
};

}  // namespace orv::store::jet
