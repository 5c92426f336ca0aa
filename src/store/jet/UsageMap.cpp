#include "store/jet/UsageMap.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "errors/Error.h"
#include "store/jet/DataPage.h"

namespace orv::store::jet {
namespace {

// First byte of a map's row.
constexpr std::uint8_t kBitmap = 0;
constexpr std::uint8_t kPointers = 1;
constexpr std::size_t kStartOffset = 1;  // u32: page of the first bit
constexpr std::size_t kBitmapOffset = 5;
constexpr std::size_t kPointersOffset = 1;  // u32 each

bool bitAt(const std::uint8_t* bits, std::size_t at) {
  return (bits[at / 8] >> (at % 8) & 1) != 0;
}

void setBit(std::uint8_t* bits, std::size_t at, bool value) {
  const auto mask = static_cast<std::uint8_t>(1 << (at % 8));
  bits[at / 8] = static_cast<std::uint8_t>(value ? bits[at / 8] | mask : bits[at / 8] & ~mask);
}

/// The first set bit of `count` bits that is not before `from`; `count` when there is none.
std::size_t nextBit(const std::uint8_t* bits, std::size_t from, std::size_t count) {
  for (std::size_t at = from; at < count;) {
    const unsigned rest = bits[at / 8] >> (at % 8);
    if (rest != 0) {
      return std::min(count, at + static_cast<std::size_t>(std::countr_zero(rest)));
    }
    at = (at / 8 + 1) * 8;
  }
  return count;
}

}  // namespace

Bytes UsageMap::emptyRow(const Format& format) {
  return Bytes(kBitmapOffset + format.inlineMapBytes, 0);
}

UsageMap::Shape UsageMap::shape() const {
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

PageNumber UsageMap::pointer(const Shape& map, std::size_t index) const {
  return map.page.view().u32(map.offset + 4 * index);
}

PageRef UsageMap::mapPage(const Shape& map, std::size_t index) const {
  PageRef page = pager_.read(pointer(map, index));
  if (page.type() != PageType::usageMap) {
    raiseDamaged(page.number(), "it should be a map of pages, but is a page of another kind");
  }
  return page;
}

bool UsageMap::contains(PageNumber page) const {
  const Shape map = shape();
  if (!map.pointers) {
    const bool covered = page >= map.start && page - map.start < map.size * 8;
    return covered ? bitAt(map.page.data() + map.offset, page - map.start) : outside_;
  }
  const std::size_t index = page / bitsPerMapPage();
  if (index >= map.size / 4 || pointer(map, index) == 0) {
    return outside_;
  }
  return bitAt(mapPage(map, index).data() + kMapPageHeader, page % bitsPerMapPage());
}

std::optional<PageNumber> UsageMap::next(PageNumber from, PageNumber end) const {
  const Shape map = shape();
  if (!map.pointers) {
    // Pages outside the bitmap never need to be searched for: free ones beyond it are not in use
    // before the file has grown to them, which makes the map cover them.
    const PageNumber first = std::max(from, map.start);
    const std::size_t bits = map.size * 8;
    const std::size_t found = first - map.start < bits
                                  ? nextBit(map.page.data() + map.offset, first - map.start, bits)
                                  : bits;
    return found < bits && map.start + found < end
               ? std::optional(static_cast<PageNumber>(map.start + found))
               : std::nullopt;
  }
  const std::size_t bits = bitsPerMapPage();
  for (std::size_t index = from / bits; index < map.size / 4 && index * bits < end; ++index) {
    if (pointer(map, index) == 0) {
      continue;
    }
    const std::size_t first = index == from / bits ? from % bits : 0;
    const std::size_t found = nextBit(mapPage(map, index).data() + kMapPageHeader, first, bits);
    if (found < bits) {
      const std::size_t page = index * bits + found;
      return page < end ? std::optional(static_cast<PageNumber>(page)) : std::nullopt;
    }
  }
  return std::nullopt;
}

void UsageMap::set(PageNumber page, bool value) {
  Shape map = shape();
  if (!map.pointers) {
    if (setInBitmap(map, page, value) || value == outside_ || (!outside_ && moveStart(map, page))) {
      return;
    }
    turnIntoPointers(map);
    map = shape();
  }
  setInMapPage(map, page, value);
}

bool UsageMap::setInBitmap(const Shape& map, PageNumber page, bool value) {
  if (page < map.start || page - map.start >= map.size * 8) {
    return false;
  }
  setBit(pager_.modify(location_.page) + map.offset, page - map.start, value);
  return true;
}

bool UsageMap::moveStart(const Shape& map, PageNumber page) {
  // A bitmap that lies elsewhere can begin elsewhere, as long as it spans all its pages.
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
  setBit(bytes, page - start, true);
  return true;
}

PageNumber UsageMap::newMapPage() {
  // The map of free pages cannot ask itself for a page.
  const PageNumber page = outside_ ? pager_.append() : PageAllocator(pager_).allocate();
  std::uint8_t* bytes = pager_.modify(page);
  std::memset(bytes, outside_ ? 0xff : 0, pager_.format().pageSize);
  bytes[0] = static_cast<std::uint8_t>(PageType::usageMap);
  bytes[1] = 1;
  store16(bytes + 2, 0);
  return page;
}

void UsageMap::turnIntoPointers(const Shape& map) {
  const std::size_t bits = map.size * 8;
  Bytes old(map.page.data() + map.offset, map.page.data() + map.offset + map.size);
  std::uint8_t* row = pager_.modify(location_.page) + map.offset - kBitmapOffset;
  std::memset(row, 0, kBitmapOffset + map.size);
  row[0] = kPointers;
  for (std::size_t at = 0; at < bits; ++at) {
    if (bitAt(old.data(), at) != outside_) {
      setInMapPage(shape(), static_cast<PageNumber>(map.start + at), !outside_);
    }
  }
}

void UsageMap::setInMapPage(const Shape& map, PageNumber page, bool value) {
  const std::size_t bits = bitsPerMapPage();
  const std::size_t index = page / bits;
  if (index >= map.size / 4) {
    raiseDamaged(location_.page, "page " + std::to_string(page) + " is beyond what a map covers");
  }
  PageNumber target = pointer(map, index);
  if (target == 0) {
    if (value == outside_) {
      return;
    }
    target = newMapPage();
    store32(pager_.modify(location_.page) + map.offset + 4 * index, target);
    if (outside_) {
      set(target, false);
    }
  } else {
    mapPage(map, index);
  }
  setBit(pager_.modify(target) + kMapPageHeader, page % bits, value);
}

PageNumber PageAllocator::allocate() {
  UsageMap free = freePages(pager_);
  if (std::optional<PageNumber> page = free.next(2)) {
    free.remove(*page);
    std::memset(pager_.modify(*page), 0, pager_.format().pageSize);
    return *page;
  }
  const PageNumber page = pager_.append();
  free.remove(page);
  return page;
}

void PageAllocator::release(PageNumber page) {
  UsageMap free = freePages(pager_);
  if (page < 2 || free.contains(page)) {
    raiseDamaged(page, "it is to be freed, but is free already");
  }
  free.add(page);
}

}  // namespace orv::store::jet
