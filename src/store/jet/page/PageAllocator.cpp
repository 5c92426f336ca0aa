#include "store/jet/page/PageAllocator.h"

#include <cstring>
#include <optional>

#include "store/jet/page/FreePages.h"

namespace orv::store::jet {
namespace {

/// A page of bits for each pointer that a map's row has room for, and as many for the map of free
/// pages.
constexpr std::uint64_t kMostPagesOfOneChange = 64;

}  // namespace

PageNumber PageAllocator::allocate() {
  FreePages free(pager_);
  if (!free.lies()) {
    if (const std::optional<PageNumber> page = free.first()) {
      free.remove(*page);
      std::memset(pager_.modify(*page), 0, pager_.format().pageSize);
      return *page;
    }
  }
  const PageNumber page = pager_.append();
  free.remove(page);
  return page;
}

void PageAllocator::release(PageNumber page) {
  FreePages free(pager_);
  const bool isFree = free.covers(page) && free.contains(page) && !free.lies();
  if (page < FreePages::kFirst || isFree) {
    raiseDamaged(page, "it is to be freed, but is free already");
  }
  free.add(page);
}

bool PageAllocator::canGrow() const {
  return (pager_.pageCount() + kMostPagesOfOneChange) * pager_.format().pageSize <=
         pager_.format().maxFileSize;
}

}  // namespace orv::store::jet
