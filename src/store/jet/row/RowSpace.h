// Room for rows on the data pages of one owner.
#pragma once

#include <cstdint>
#include <span>

#include "store/jet/page/DataPage.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// The data pages of a table, or of a column's long values: finds room for rows and gives back
/// pages on which none is left. `owner` is what the pages carry in their header; the two maps
/// list all pages, and those with room. Lives within a transaction, in which nobody else changes
/// these pages meanwhile.
class RowSpace {
 public:
  RowSpace(Pager& pager, std::uint32_t owner, RowId ownedPages, RowId freePages)
      : pager_(pager), owner_(owner), owned_(ownedPages), free_(freePages) {}

  /// Puts a row where there is room, on `hint` if it can (0: no hint). Cost does not grow with
  /// the number of pages.
  RowId add(std::span<const std::uint8_t> row, SlotKind kind, PageNumber hint = 0);
  /// Gives the row at `place` new content if its page has the room; false if not.
  bool replace(RowId place, std::span<const std::uint8_t> row, SlotKind kind);
  /// Deletes a row. The room on its page is there when a row of another page is deleted, or another
  /// call of this class follows: mostly the rows of a page go together.
  void erase(RowId place);
  /// To be called after the last row has been deleted.
  void finish();

 private:
  RowId put(PageNumber page, std::span<const std::uint8_t> row, SlotKind kind);
  bool takes(PageNumber page, std::size_t length) const;
  PageNumber findPage(std::size_t length, PageNumber hint);
  void updateFreeMap(PageNumber page, const DataPage& data);

  Pager& pager_;
  std::uint32_t owner_;
  RowId owned_;
  RowId free_;
  PageNumber erasing_ = 0;  ///< the page that has lost rows, with gaps; 0 when none has
  PageNumber last_ = 0;     ///< the page that took the last row; 0 when it may be gone
};

}  // namespace orv::store::jet
