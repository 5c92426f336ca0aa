#include "store/jet/index/IndexCursor.h"

#include <algorithm>
#include <cstdlib>

namespace orv::store::jet {

IndexCursor::IndexCursor(Pager& pager, PageNumber root, PageNumber table,
                         std::span<const std::uint8_t> key, Bound bound)
    : pager_(&pager), root_(root), table_(table), entry_(key.begin(), key.end()), bound_(bound) {
  seek();
}

std::shared_ptr<const StoredIndexPage> IndexCursor::load(PageNumber page) const {
  return std::make_shared<const StoredIndexPage>(*pager_, page, table_);
}

void IndexCursor::seek() {
  const auto find = [this](const IndexPage& page) {
    return bound_ == Bound::lower ? page.lowerBound(entry_) : page.upperBound(entry_);
  };
  leaf_ = load(root_);
  for (std::size_t depth = 0; !leaf_->entries.isLeaf(); ++depth) {
    const IndexPage& node = leaf_->entries;
    if (depth == kMaxIndexDepth || node.childCount() == 0) {
      raiseDamaged(leaf_->bytes.number(), "it leads to no leaf of its index");
    }
    leaf_ = load(node.child(std::min(find(node), node.childCount() - 1)));
  }
  at_ = find(leaf_->entries);
  leavesPassed_ = 0;
}

void IndexCursor::refresh() {
  if (pager_->read(leaf_->bytes.number()).data() != leaf_->bytes.data()) seek();
}

void IndexCursor::cross(PageNumber neighbour, int direction) {
  leavesPassed_ += direction;
  if (std::abs(leavesPassed_) > pager_->pageCount()) {
    raiseDamaged(neighbour, "the leaves of its index run in a circle");
  }
  leaf_ = load(neighbour);
  if (!leaf_->entries.isLeaf()) raiseDamaged(neighbour, "it should be a leaf of its index");
}

void IndexCursor::settle() {
  leaf_->entries.copyEntry(at_, entry_);
  onEntry_ = true;
}

bool IndexCursor::next() {
  if (onEntry_) {
    ++at_;
    bound_ = Bound::upper;
    onEntry_ = false;
  }
  if (at_ == leaf_->entries.count()) refresh();
  while (at_ == leaf_->entries.count()) {
    const PageNumber neighbour = leaf_->entries.next();
    if (neighbour == 0) return false;
    cross(neighbour, 1);
    at_ = 0;
  }
  settle();
  return true;
}

bool IndexCursor::previous() {
  if (onEntry_) {
    bound_ = Bound::lower;
    onEntry_ = false;
  }
  if (at_ == 0) refresh();
  while (at_ == 0) {
    const PageNumber neighbour = leaf_->entries.previous();
    if (neighbour == 0) return false;
    cross(neighbour, -1);
    at_ = leaf_->entries.count();
  }
  --at_;
  settle();
  return true;
}

std::span<const std::uint8_t> IndexCursor::key() const {
  return std::span(entry_).first(entry_.size() - IndexPage::kPointerSize);
}

RowId IndexCursor::rowId() const {
  const std::uint8_t* pointer = entry_.data() + entry_.size() - IndexPage::kPointerSize;
  return {static_cast<PageNumber>(pointer[0] << 16 | pointer[1] << 8 | pointer[2]), pointer[3]};
}

}  // namespace orv::store::jet
