#include "store/jet/page/MapBits.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "errors/Error.h"
#include "store/jet/page/DataPage.h"

namespace orv::store::jet {
namespace {

// First byte of a map's row.
constexpr std::uint8_t kBitmap = 0;
constexpr std::uint8_t kPointers = 1;
constexpr std::size_t kStartOffset = 1;  // u32: page of the first bit
constexpr std::size_t kBitmapOffset = 5;
constexpr std::size_t kPointersOffset = 1;  // u32 each

void setBit(std::uint8_t* bits, std::size_t at, bool value) {
  const auto mask = static_cast<std::uint8_t>(1 << (at % 8));
  bits[at / 8] = static_cast<std::uint8_t>(value ? bits[at / 8] | mask : bits[at / 8] & ~mask);
}

bool bitAt(const std::uint8_t* bits, std::size_t at) {
  return (bits[at / 8] >> (at % 8) & 1) != 0;
}

constexpr std::size_t kSpan = 256;  // bits that are looked at in one go

bool isEmptySpan(const std::uint8_t* bits) {
  return (load64(bits) | load64(bits + 8) | load64(bits + 16) | load64(bits + 24)) == 0;
}

/// The first set bit of `count` bits that is not before `from`; `count` when there is none.
std::size_t nextBit(const std::uint8_t* bits, std::size_t from, std::size_t count) {
  for (std::size_t at = from; at < count;) {
    // A map is long, and few pages of a file have room or are free.
    if (at % 8 == 0 && at + kSpan <= count && isEmptySpan(bits + at / 8)) {
      at += kSpan;
      continue;
    }
    const unsigned rest = bits[at / 8] >> (at % 8);
    if (rest != 0) {
      return std::min(count, at + static_cast<std::size_t>(std::countr_zero(rest)));
    }
    at = (at / 8 + 1) * 8;
  }
  return count;
}

}  // namespace

MapBits::Shape MapBits::shape() const {
  Shape map{pager_.read(location_.page), 0, 0, false, 0};
  const Slot slot = DataPage(pager_.format(), map.page.view()).slot(location_.row);
  const ByteView view = map.page.view();
  if (slot.length <= kBitmapOffset) {
    raiseDamaged(location_.page, "a map of pages is too short");
  }
  const std::uint8_t kind = view.u8(slot.offset);
  if (kind != kBitmap && kind != kPointers) {
    raiseDamaged(location_.page, "a map of pages is of an unknown kind");
  }
  map.pointers = kind == kPointers;
  map.offset = slot.offset + (map.pointers ? kPointersOffset : kBitmapOffset);
  map.size = slot.offset + slot.length - map.offset;
  if (!map.pointers) {
    map.start = view.u32(slot.offset + kStartOffset);
  }
  return map;
}

PageNumber MapBits::pointer(const Shape& map, std::size_t index) const {
  return map.page.view().u32(map.offset + 4 * index);
}

bool MapBits::leadsToBits(PageNumber page) const {
  return badPointer_ == BadPointer::damage ||
         (page < pager_.pageCount() && pager_.read(page).type() == PageType::usageMap);
}

std::optional<PageRef> MapBits::mapPage(const Shape& map, std::size_t index) const {
  const PageNumber number = index < map.size / 4 ? pointer(map, index) : 0;
  if (number == 0 || !leadsToBits(number)) {
    return std::nullopt;
  }
  PageRef page = pager_.read(number);
  if (page.type() != PageType::usageMap) {
    raiseDamaged(number, "it should be a map of pages, but is a page of another kind");
  }
  return page;
}

std::optional<MapBits::Place> MapBits::placeOf(PageNumber page) const {
  Shape map = shape();
  if (!map.pointers) {
    const std::size_t at = page - map.start;  // of those before the first: beyond all
    if (at >= map.size * 8) return std::nullopt;
    return Place{std::move(map.page), map.offset * 8 + at};
  }
  auto bits = mapPage(map, page / bitsPerMapPage());
  if (!bits) return std::nullopt;
  return Place{*std::move(bits), kMapPageHeader * 8 + page % bitsPerMapPage()};
}

std::optional<bool> MapBits::find(PageNumber page) const {
  const auto place = placeOf(page);
  return place ? std::optional(bitAt(place->page.data(), place->bit)) : std::nullopt;
}

std::optional<PageNumber> MapBits::next(PageNumber from, PageNumber end) const {
  const Shape map = shape();
  if (!map.pointers) {
    const PageNumber first = std::max(from, map.start);
    const std::size_t bits = map.size * 8;
    const std::size_t found = nextBit(map.page.data() + map.offset, first - map.start, bits);
    return found < bits && map.start + found < end
               ? std::optional(static_cast<PageNumber>(map.start + found))
               : std::nullopt;
  }
  const std::size_t bits = bitsPerMapPage();
  for (std::size_t index = from / bits; index < map.size / 4 && index * bits < end; ++index) {
    const auto page = mapPage(map, index);
    if (!page) {
      continue;
    }
    const std::size_t first = index == from / bits ? from % bits : 0;
    if (const std::size_t found = nextBit(page->data() + kMapPageHeader, first, bits);
        found < bits) {
      const std::size_t number = index * bits + found;
      return number < end ? std::optional(static_cast<PageNumber>(number)) : std::nullopt;
    }
  }
  return std::nullopt;
}

bool MapBits::set(PageNumber page, bool value) {
  const auto place = placeOf(page);
  if (place) setBit(pager_.modify(place->page.number()), place->bit, value);
  return place.has_value();
}

bool MapBits::moveStart(PageNumber page) {
  const Shape map = shape();
  const std::size_t bits = map.size * 8;
  const std::uint8_t* old = map.page.data() + map.offset;
  PageNumber low = page;
  PageNumber high = page;
  for (std::size_t at = nextBit(old, 0, bits); at < bits; at = nextBit(old, at + 1, bits)) {
    low = std::min(low, static_cast<PageNumber>(map.start + at));
    high = std::max(high, static_cast<PageNumber>(map.start + at));
  }
  const PageNumber start = low / 8 * 8;
  if (high - start >= bits) {
    return false;
  }
  std::uint8_t* bytes = pager_.modify(location_.page) + map.offset;
  std::memset(bytes, 0, map.size);
  store32(bytes - (kBitmapOffset - kStartOffset), start);
  for (std::size_t at = nextBit(old, 0, bits); at < bits; at = nextBit(old, at + 1, bits)) {
    setBit(bytes, map.start + at - start, true);
  }
  return true;
}

std::vector<PageNumber> MapBits::turnIntoPointers() {
  const Shape map = shape();
  const std::size_t bits = map.size * 8;
  const std::uint8_t* old = map.page.data() + map.offset;
  std::vector<PageNumber> pages;
  for (std::size_t at = nextBit(old, 0, bits); at < bits; at = nextBit(old, at + 1, bits)) {
    pages.push_back(static_cast<PageNumber>(map.start + at));
  }
  std::uint8_t* row = pager_.modify(location_.page) + map.offset - kBitmapOffset;
  std::memset(row, 0, kBitmapOffset + map.size);
  row[0] = kPointers;
  return pages;
}

void MapBits::addMapPage(PageNumber page, PageNumber target, PageNumber firstSet) {
  const std::size_t bits = bitsPerMapPage();
  const std::size_t index = page / bits;
  const std::size_t pointers = shape().offset;
  store32(pager_.modify(location_.page) + pointers + 4 * index, target);
  std::uint8_t* bytes = pager_.modify(target);
  std::memset(bytes, 0, pager_.format().pageSize);
  bytes[0] = static_cast<std::uint8_t>(PageType::usageMap);
  bytes[1] = 1;
  for (std::size_t at = std::max<std::size_t>(firstSet, index * bits); at < (index + 1) * bits;
       ++at) {
    setBit(bytes + kMapPageHeader, at - index * bits, true);
  }
}

}  // namespace orv::store::jet
