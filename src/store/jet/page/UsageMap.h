// Sets of pages: which pages belong to a table, which have room for rows.
#pragma once

#include <optional>

#include "store/jet/page/MapBits.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// A set of page numbers, kept in a row of a data page. A page that the map has no bit for is not
/// in the set. (The map of free pages is read in another way: see FreePages.)
class UsageMap {
 public:
  /// The map kept at `location`. Reads nothing yet.
  UsageMap(Pager& pager, RowId location)
      : pager_(pager), bits_(pager, location, MapBits::BadPointer::damage) {}

  bool contains(PageNumber page) const { return bits_.find(page).value_or(false); }
  /// The first page of the set that is not below `from` and that the file has.
  std::optional<PageNumber> next(PageNumber from) const { return next(from, pager_.pageCount()); }
  /// The same among the pages below `end`, which the file need not have.
  std::optional<PageNumber> next(PageNumber from, PageNumber end) const {
    return bits_.next(from, end);
  }
  /// Adds a page; turns the map into one of pointers when its span grows too long for a bitmap.
  void add(PageNumber page);
  /// Adds a page unless that could take more pages than the file may still grow by; for sets that
  /// lose nothing when a page is missing in them.
  void addIfItFits(PageNumber page);
  void remove(PageNumber page) { bits_.set(page, false); }
  /// Gives the pages of bitmaps that belong to the map itself to `visit`.
  template <class Visitor>
  void forEachMapPage(Visitor visit) const {
    bits_.forEachPointer(visit, visit);
  }

  /// The row of a new, empty map.
  static Bytes emptyRow(const Format& format);

 private:
  bool addToBitmap(PageNumber page);
  void addToMapPage(PageNumber page);

  Pager& pager_;
  MapBits bits_;
};

}  // namespace orv::store::jet
