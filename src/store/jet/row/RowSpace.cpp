#include "store/jet/row/RowSpace.h"

#include <utility>

#include "store/jet/page/PageAllocator.h"
#include "store/jet/page/UsageMap.h"

namespace orv::store::jet {
namespace {

/// How many pages with room are looked at before a new one is taken.
constexpr int kMostTried = 8;

/// A page with less room than this is not offered for rows any more.
std::size_t leastUsefulRoom(const Format& format) {
  return format.pageSize / 32;
}
/// A page that a row did not fit on is only offered further if it has this much room.
std::size_t leastRoomWorthKeeping(const Format& format) {
  return format.pageSize / 4;
}

}  // namespace

bool RowSpace::takes(PageNumber page, std::size_t length) const {
  const PageRef ref = pager_.read(page);
  if (ref.type() != PageType::data) {
    return false;
  }
  const DataPage data(pager_.format(), ref.view());
  return data.owner() == owner_ && data.takes(length);
}

PageNumber RowSpace::findPage(std::size_t length, PageNumber hint) {
  // A page that was freed since still looks like one of the owner's.
  if (hint != 0 && hint < pager_.pageCount() && takes(hint, length) &&
      UsageMap(pager_, owned_).contains(hint)) {
    return hint;
  }
  UsageMap free(pager_, free_);
  int tried = 0;
  for (auto page = free.next(0); page && tried < kMostTried; page = free.next(*page + 1), ++tried) {
    if (takes(*page, length)) {
      return *page;
    }
    const PageRef ref = pager_.read(*page);
    if (DataPage(pager_.format(), ref.view()).freeSpace() <
        leastRoomWorthKeeping(pager_.format())) {
      free.remove(*page);
    }
  }
  const PageNumber page = PageAllocator(pager_).allocate();
  DataPageEditor(pager_.format(), pager_.modify(page), page).initialize(owner_);
  UsageMap(pager_, owned_).add(page);
  free.addIfItFits(page);
  return page;
}

void RowSpace::updateFreeMap(PageNumber page, const DataPage& data) {
  const bool useful = data.hasRoom(leastUsefulRoom(pager_.format()));
  UsageMap free(pager_, free_);
  if (free.contains(page) != useful) {
    useful ? free.addIfItFits(page) : free.remove(page);
  }
}

RowId RowSpace::add(std::span<const std::uint8_t> row, SlotKind kind, PageNumber hint) {
  finish();
  if (last_ != 0) {
    const DataPage data = DataPageEditor(pager_.format(), pager_.modify(last_), last_).read();
    if (data.takes(row.size())) return put(last_, row, kind);
  }
  last_ = findPage(row.size(), hint);
  return put(last_, row, kind);
}

RowId RowSpace::put(PageNumber page, std::span<const std::uint8_t> row, SlotKind kind) {
  DataPageEditor editor(pager_.format(), pager_.modify(page), page);
  const RowId place{page, editor.add(row, kind)};
  if (const DataPage data = editor.read(); !data.hasRoom(leastUsefulRoom(pager_.format()))) {
    updateFreeMap(page, data);
  }
  return place;
}

bool RowSpace::replace(RowId place, std::span<const std::uint8_t> row, SlotKind kind) {
  finish();
  const PageRef ref = pager_.read(place.page);
  const DataPage data(pager_.format(), ref.view());
  const Slot slot = data.slot(place.row);
  if (row.size() > slot.length + data.freeSpace()) {
    return false;
  }
  DataPageEditor editor(pager_.format(), pager_.modify(place.page), place.page);
  editor.replace(place.row, row, kind);
  updateFreeMap(place.page, editor.read());
  return true;
}

void RowSpace::erase(RowId place) {
  if (place.page != erasing_) finish();
  erasing_ = place.page;
  DataPageEditor(pager_.format(), pager_.modify(place.page), place.page).erase(place.row);
}

void RowSpace::finish() {
  const PageNumber page = std::exchange(erasing_, 0);
  if (page == 0) return;
  DataPageEditor editor(pager_.format(), pager_.modify(page), page);
  if (editor.closeGaps()) return updateFreeMap(page, editor.read());
  if (last_ == page) last_ = 0;
  UsageMap(pager_, owned_).remove(page);
  UsageMap(pager_, free_).remove(page);
  PageAllocator(pager_).release(page);
}

}  // namespace orv::store::jet
