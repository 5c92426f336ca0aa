// Sets of pages: which pages are free, which belong to a table, which have room for rows.
#pragma once

#include <cstdint>
#include <optional>

#include "store/jet/Pager.h"
#include "store/jet/RowId.h"

namespace orv::store::jet {

/// Above all page numbers: row pointers hold three bytes of one.
inline constexpr PageNumber kEndOfPages = 1 << 24;

/// A set of page numbers, kept in a row of a data page: as a bitmap in the row for a short span
/// of pages, or as pointers to pages of bitmaps.
class UsageMap {
 public:
  /// The map kept at `location`. Pages that it does not cover are in the set when `outside` is
  /// true (the map of free pages), and are not otherwise. Reads nothing yet.
  UsageMap(Pager& pager, RowId location, bool outside = false)
      : pager_(pager), location_(location), outside_(outside) {}

  bool contains(PageNumber page) const;
  /// The first page of the set that is not below `from` and that the file has.
  std::optional<PageNumber> next(PageNumber from) const { return next(from, pager_.pageCount()); }
  /// The same among the pages below `end`, which the file need not have.
  std::optional<PageNumber> next(PageNumber from, PageNumber end) const;
  /// Adds a page; turns the map into one of pointers when its span grows too long for a bitmap.
  void add(PageNumber page) { set(page, true); }
  void remove(PageNumber page) { set(page, false); }
  /// Gives the pages of bitmaps that belong to the map itself to `visit`.
  template <class Visitor>
  void forEachMapPage(Visitor visit) const {
    const Shape map = shape();
    for (std::size_t i = 0; map.pointers && i < map.size / 4; ++i) {
      if (PageNumber page = pointer(map, i); page != 0) {
        visit(page);
      }
    }
  }

  /// The row of a new, empty map.
  static Bytes emptyRow(const Format& format);

 private:
  struct Shape {
    PageRef page;        ///< holds the map's row
    std::size_t offset;  ///< of the bitmap or the pointers
    std::size_t size;    ///< bytes of them
    bool pointers;
    PageNumber start;  ///< bitmap: the page of its first bit
  };

  Shape shape() const;
  std::size_t bitsPerMapPage() const { return (pager_.format().pageSize - kMapPageHeader) * 8; }
  PageNumber pointer(const Shape& map, std::size_t index) const;
  /// The bitmap page that `pointer(index)` names, checked.
  PageRef mapPage(const Shape& map, std::size_t index) const;
  void set(PageNumber page, bool value);
  bool setInBitmap(const Shape& map, PageNumber page, bool value);
  void setInMapPage(const Shape& map, PageNumber page, bool value);
  bool moveStart(const Shape& map, PageNumber page);
  void turnIntoPointers(const Shape& map);
  PageNumber newMapPage();

  static constexpr std::size_t kMapPageHeader = 4;

  Pager& pager_;
  RowId location_;
  bool outside_;
};

/// Hands out pages of the file, by the global usage map (page 1, row 0: a set bit is a free page).
class PageAllocator {
 public:
  explicit PageAllocator(Pager& pager) : pager_(pager) {}
  /// A page for a new use: a freed one, or a new one at the end of the file. Its bytes are zero.
  PageNumber allocate();
  void release(PageNumber page);

  /// The map of free pages.
  static UsageMap freePages(Pager& pager) { return {pager, {1, 0}, true}; }

 private:
  Pager& pager_;
};

}  // namespace orv::store::jet
