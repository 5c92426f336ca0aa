#include "store/jet/page/UsageMap.h"

#include "store/jet/page/PageAllocator.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kRowHeader = 5;  // kind and first page

}  // namespace

Bytes UsageMap::emptyRow(const Format& format) {
  return Bytes(kRowHeader + format.inlineMapBytes, 0);
}

void UsageMap::add(PageNumber page) {
  if (addToBitmap(page)) {
    return;
  }
  if (!bits_.hasPointers()) {
    for (const PageNumber old : bits_.turnIntoPointers()) {
      addToMapPage(old);
    }
  }
  addToMapPage(page);
}

void UsageMap::addIfItFits(PageNumber page) {
  if (!addToBitmap(page) && PageAllocator(pager_).canGrow()) {
    add(page);
  }
}

/// Adds a page where that takes no other; false when it would.
bool UsageMap::addToBitmap(PageNumber page) {
  if (bits_.set(page, true)) {
    return true;
  }
  // A bitmap that lies elsewhere can begin elsewhere, as long as it spans all its pages.
  return !bits_.hasPointers() && bits_.moveStart(page) && bits_.set(page, true);
}

void UsageMap::addToMapPage(PageNumber page) {
  if (bits_.set(page, true)) {
    return;
  }
  if (!bits_.hasPointerFor(page)) {
    raiseDamaged(page, "the page is beyond what a map of pages covers");
  }
  bits_.addMapPage(page, PageAllocator(pager_).allocate(), kEndOfPages);
  bits_.set(page, true);
}

}  // namespace orv::store::jet
