#include "store/jet/page/PageCache.h"

namespace orv::store::jet {

PageBytes PageCache::find(PageNumber page) {
  const auto found = frames_.find(page);
  if (found == frames_.end()) {
    return nullptr;
  }
  ages_.splice(ages_.end(), ages_, found->second.age);
  return found->second.bytes;
}

void PageCache::put(PageNumber page, PageBytes bytes) {
  if (const auto found = frames_.find(page); found != frames_.end()) {
    found->second.bytes = std::move(bytes);
    return;
  }
  if (frames_.size() >= capacity_) {
    frames_.erase(ages_.front());
    ages_.pop_front();
  }
  ages_.push_back(page);
  frames_.emplace(page, Frame{std::move(bytes), std::prev(ages_.end())});
}

void PageCache::clear() {
  frames_.clear();
  ages_.clear();
}

}  // namespace orv::store::jet
