// The bits of a usage map, where the file keeps them.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Above all page numbers: row pointers hold three bytes of one.
inline constexpr PageNumber kEndOfPages = 1 << 24;

/// One bit a page, for some of the file's pages: a bitmap in a row of a data page, or pages of
/// bits that such a row has pointers to. Says nothing of what a page without a bit is.
class MapBits {
 public:
  /// What a pointer is that leads beyond the file, or to a page of another kind.
  enum class BadPointer {
    damage,  ///< raises kCorruptFile
    null,    ///< there are no bits where it leads
  };

  /// The bits kept at `location`. Reads nothing yet.
  MapBits(Pager& pager, RowId location, BadPointer badPointer)
      : pager_(pager), location_(location), badPointer_(badPointer) {}

  /// The bit of a page; none when the map keeps none for it.
  std::optional<bool> find(PageNumber page) const;
  /// The first page from `from` on, and below `end`, whose bit is set.
  std::optional<PageNumber> next(PageNumber from, PageNumber end) const;
  /// Sets a page's bit; false when the map keeps none for it.
  bool set(PageNumber page, bool value);

  bool hasPointers() const { return shape().pointers; }
  /// The page of the first bit of a bitmap in a row.
  PageNumber start() const { return shape().start; }

  /// Lets a bitmap in a row begin elsewhere, so that it has a bit for `page` too. False, with
  /// nothing changed, when it would not reach from its first set bit to its last any more.
  bool moveStart(PageNumber page);
  /// Makes a bitmap in a row one of pointers, all of them null. Returns the pages whose bits were
  /// set.
  std::vector<PageNumber> turnIntoPointers();
  /// Whether a row of pointers has one, null or not, for the page of bits that `page` needs.
  bool hasPointerFor(PageNumber page) const { return page / bitsPerMapPage() < shape().size / 4; }
  /// Makes `target` the page that has the bit of `page`, and of those around it; the bits from
  /// `firstSet` on are set. There must be a pointer for it.
  void addMapPage(PageNumber page, PageNumber target, PageNumber firstSet);

  /// Gives what the pointers name to `visit`; those that do not count go to `visitBad`.
  template <class Visitor, class BadVisitor>
  void forEachPointer(Visitor visit, BadVisitor visitBad) const {
    const Shape map = shape();
    for (std::size_t i = 0; map.pointers && i < map.size / 4; ++i) {
      if (const PageNumber page = pointer(map, i); page != 0) {
        leadsToBits(page) ? visit(page) : visitBad(page);
      }
    }
  }

 private:
  struct Shape {
    PageRef page;        ///< holds the map's row
    std::size_t offset;  ///< of the bitmap or the pointers
    std::size_t size;    ///< bytes of them
    bool pointers;
    PageNumber start;  ///< bitmap: the page of its first bit
  };

  /// Where a bit is.
  struct Place {
    PageRef page;
    std::size_t bit;  ///< counted from the beginning of the page
  };

  Shape shape() const;
  /// Of a page; none when the map keeps none for it.
  std::optional<Place> placeOf(PageNumber page) const;
  std::size_t bitsPerMapPage() const { return (pager_.format().pageSize - kMapPageHeader) * 8; }
  PageNumber pointer(const Shape& map, std::size_t index) const;
  bool leadsToBits(PageNumber page) const;
  /// The page of bits that pointer `index` names; none for a null pointer.
  std::optional<PageRef> mapPage(const Shape& map, std::size_t index) const;

  static constexpr std::size_t kMapPageHeader = 4;

  Pager& pager_;
  RowId location_;
  BadPointer badPointer_;
};

}  // namespace orv::store::jet
