#include "store/jet/page/FreePages.h"

namespace orv::store::jet {

bool FreePages::lies() const {
  if (bits_.next(0, kFirst)) {
    return true;
  }
  bool callsItselfFree = false;
  bits_.forEachPointer(
      [&](PageNumber page) { callsItselfFree |= bits_.find(page).value_or(false); },
      [](PageNumber) {});
  return callsItselfFree;
}

void FreePages::remove(PageNumber page) {
  if (bits_.set(page, false) || lies()) {
    return;
  }
  if (!bits_.hasPointers()) {
    if (page < bits_.start()) {
      return;  // in use, as all pages that the bitmap has left behind
    }
    useMapPages();
  }
  if (!bits_.set(page, false) && bits_.hasPointerFor(page)) {
    const PageNumber bitsPage = pager_.append();
    bits_.addMapPage(page, bitsPage, pager_.pageCount());
  }
}

void FreePages::add(PageNumber page) {
  if (bits_.set(page, true) || lies()) {
    return;
  }
  if (!bits_.hasPointers()) {
    useMapPages();
  }
  addToMapPage(page);
}

/// Turns a bitmap in a row into pages of bits. Those are made of the free pages themselves, so
/// that the file need not grow.
void FreePages::useMapPages() {
  for (const PageNumber page : bits_.turnIntoPointers()) {
    if (page < pager_.pageCount()) {
      addToMapPage(page);
    }
  }
}

void FreePages::addToMapPage(PageNumber page) {
  if (!bits_.set(page, true) && bits_.hasPointerFor(page)) {
    bits_.addMapPage(page, page, pager_.pageCount());
  }
}

}  // namespace orv::store::jet
