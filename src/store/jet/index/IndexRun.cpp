#include "store/jet/index/IndexRun.h"

#include <algorithm>

namespace orv::store::jet {

/// Where the entry belongs on the leaf at hand; none when it belongs, or may belong, on another.
std::optional<std::size_t> IndexRun::placeOnLeaf() {
  // Whoever has read the page meanwhile keeps it as it was: the bytes to change are others then.
  if (!leaf_ || pager_.modify(path_.steps[path_.depth].page) != leafBytes_) return std::nullopt;
  if (!end_.empty() && std::ranges::lexicographical_compare(end_, entry_)) return std::nullopt;
  const std::size_t at = leaf_->lowerBound(entry_);
  return at > 0 || isFirst_ ? std::optional(at) : std::nullopt;
}

/// Goes down the tree to where the entry belongs; returns the place on the leaf there.
std::size_t IndexRun::openLeaf(bool widen) {
  finish();
  path_ = tree_.descend(entry_, widen);
  rememberEnds();
  const IndexTree::Step leaf = path_.steps[path_.depth];
  leafBytes_ = pager_.modify(leaf.page);
  leaf_.emplace(pager_.format(), pager_.modify(leaf.page), leaf.page);
  return leaf.at;
}

/// What the leaf can take, by the way to it: the lowest entry there that is not a tail bounds what
/// is below it. Links between leaves are not trusted for that.
void IndexRun::rememberEnds() {
  end_.clear();
  isFirst_ = true;
  for (std::size_t level = 0; level < path_.depth; ++level) isFirst_ &= path_.steps[level].at == 0;
  for (std::size_t level = path_.depth; level-- > 0;) {
    const IndexTree::Step step = path_.steps[level];
    const StoredIndexPage node = tree_.load(step.page);
    if (step.at < node.entries.count()) {
      end_ = node.entries.separator(step.at);
      return;
    }
  }
}

/// Whether another leaf, which a neighbour that is empty may hide, has the key of an entry that
/// belongs at an end of this one.
bool IndexRun::isBeyondLeaf(std::size_t at, std::span<const std::uint8_t> key) const {
  const bool isAtEnd = (at == 0 && !isFirst_) || (at == leaf_->count() && !end_.empty());
  return isAtEnd && tree_.find(key).has_value();
}

IndexTree::Change IndexRun::insert(std::span<const std::uint8_t> key, RowId row, SameKey sameKey) {
  using Change = IndexTree::Change;
  if (hasErased_ || erasedTo_ > 0) finish();
  IndexTree::writeEntry(entry_, key, row);
  IndexPageEditor::refuseTooLong(pager_.format(), entry_);
  const std::optional<std::size_t> onLeaf = placeOnLeaf();
  const std::size_t at = onLeaf ? *onLeaf : openLeaf(true);
  if (leaf_->isEntry(at, entry_)) return Change::none;
  const bool shares =
      tree_.isBeside(*leaf_, at, at, key, &IndexPage::hasKey) ||
      (tree_.isBeside(*leaf_, at, at, key, &IndexPage::keyBeginsWith) && tree_.find(key));
  if (sameKey == SameKey::refuse && (shares || isBeyondLeaf(at, key))) return Change::none;
  if (!leaf_->insert(at, entry_)) {
    leaf_.reset();
    path_.steps[path_.depth].at = at;
    tree_.split(path_, entry_);
  }
  return shares ? Change::entry : Change::key;
}

IndexTree::Change IndexRun::erase(std::span<const std::uint8_t> key, RowId row) {
  using Change = IndexTree::Change;
  IndexTree::writeEntry(entry_, key, row);
  std::optional<std::size_t> onLeaf = placeOnLeaf();
  const bool isApart = onLeaf && (*onLeaf > erasedTo_ || *onLeaf + 1 < erasedFrom_);
  if (isApart && erasedTo_ > 0) {
    dropErased();
    onLeaf = placeOnLeaf();
  }
  const std::size_t at = onLeaf ? *onLeaf : openLeaf(false);
  const bool isErased = erasedFrom_ <= at && at < erasedTo_;
  if (isErased || !leaf_->isEntry(at, entry_)) return Change::none;
  erasedFrom_ = erasedTo_ == 0 ? at : std::min(at, erasedFrom_);
  erasedTo_ = std::max(at + 1, erasedTo_);
  if (tree_.isBeside(*leaf_, erasedFrom_, erasedTo_, key, &IndexPage::hasKey)) return Change::entry;
  if (!tree_.isBeside(*leaf_, erasedFrom_, erasedTo_, key, &IndexPage::keyBeginsWith))
    return Change::key;
  dropErased();
  return tree_.find(key) ? Change::entry : Change::key;
}

void IndexRun::dropErased() {
  if (erasedTo_ == 0) return;
  const PageNumber page = path_.steps[path_.depth].page;
  if (pager_.modify(page) != leafBytes_) {
    leafBytes_ = pager_.modify(page);
    leaf_.emplace(pager_.format(), pager_.modify(page), page);
  }
  hasErased_ = true;
  hasErasedLast_ |= erasedTo_ == leaf_->count();
  leaf_->erase(erasedFrom_, erasedTo_);
  erasedFrom_ = erasedTo_ = 0;
}

void IndexRun::finish() {
  dropErased();
  leaf_.reset();
  if (hasErased_) tree_.settle(path_, hasErasedLast_);
  hasErased_ = hasErasedLast_ = false;
}

}  // namespace orv::store::jet
