// The map of the pages that nothing uses.
#pragma once

#include <optional>

#include "store/jet/page/MapBits.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Which pages of the file are free, by the map on page 1, in which a set bit means free. Programs
/// differ in what they let the map leave out: some lengthen its row as the file grows, some let
/// its bitmap begin further on, some leave pointers null or leave bytes of a former bitmap in
/// their place. So nothing is read into what is missing: a page without a bit is in use, unless
/// the file does not have it yet.
class FreePages {
 public:
  /// Where the map is kept.
  static constexpr RowId kPlace{1, 0};
  /// The first page that can be free: before it are the header, this map and the catalogue.
  static constexpr PageNumber kFirst = 3;

  explicit FreePages(Pager& pager)
      : pager_(pager), bits_(pager, kPlace, MapBits::BadPointer::null) {}

  /// Whether the map calls pages free that cannot be: those below kFirst, or its own. Then nothing
  /// that it says can be trusted.
  bool lies() const;
  bool contains(PageNumber page) const {
    return bits_.find(page).value_or(page >= pager_.pageCount());
  }
  /// Whether the map has a bit for the page.
  bool covers(PageNumber page) const { return bits_.find(page).has_value(); }
  /// The first page of the file that is free.
  std::optional<PageNumber> first() const { return bits_.next(kFirst, pager_.pageCount()); }

  /// Marks a page as in use. A map that has no bit for it gets one where that can be: the file
  /// grows by a page of bits when need be.
  void remove(PageNumber page);
  /// Marks a page as free. Never makes the file grow: where the map has no bit for it, the page
  /// itself becomes the page of bits for those around it, or is left without a use.
  void add(PageNumber page);

  /// Gives the map's own pages to `visit`; what stands in their place, but leads to no page of
  /// bits, to `visitBad`.
  template <class Visitor, class BadVisitor>
  void forEachMapPage(Visitor visit, BadVisitor visitBad) const {
    bits_.forEachPointer(visit, visitBad);
  }

 private:
  void useMapPages();
  void addToMapPage(PageNumber page);

  Pager& pager_;
  MapBits bits_;
};

}  // namespace orv::store::jet
