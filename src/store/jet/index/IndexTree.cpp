#include "store/jet/index/IndexTree.h"

#include <algorithm>

#include "store/jet/index/IndexPageEditor.h"
#include "store/jet/index/IndexRun.h"
#include "store/jet/page/PageAllocator.h"
#include "store/jet/page/UsageMap.h"

namespace orv::store::jet {
namespace {

/// The entry of a node for a child whose last entry is `last`.
Bytes nodeEntry(Bytes last, PageNumber child) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    last.push_back(static_cast<std::uint8_t>(child >> shift));
  }
  return last;
}

/// Where to part the entries of a page that overflows: all before the result go to the page on
/// the left. An entry that was added at the end parts there, so that keys that come in
/// ascending order leave full pages behind; else the parts are as alike as can be. 0 when
/// there is no way.
std::size_t partingPoint(const IndexPageEditor& page, std::span<const Bytes> entries,
                         std::size_t added) {
  const std::size_t least = page.isLeaf() ? 1 : 2;
  const auto works = [&](std::size_t at) {
    return at >= least && at < entries.size() && page.fits(entries.first(at)) &&
           page.fits(entries.subspan(at));
  };
  if (added + 1 == entries.size() && works(added)) return added;
  std::size_t all = 0;
  for (const Bytes& entry : entries) all += entry.size();
  std::size_t middle = 0;
  for (std::size_t left = 0; left < all / 2; ++middle) left += entries[middle].size();
  for (std::size_t distance = 0; distance < entries.size(); ++distance) {
    if (works(middle + distance)) return middle + distance;
    if (distance <= middle && works(middle - distance)) return middle - distance;
  }
  return 0;
}

}  // namespace

IndexTree::IndexTree(Pager& pager, const RealIndex& index, PageNumber table)
    : pager_(pager), index_(index), table_(table) {}

void IndexTree::initializeRoot(Pager& pager, PageNumber page, PageNumber table) {
  IndexPageEditor::initialize(pager.format(), pager.modify(page), table, 0);
}

// Reading -----------------------------------------------------------------------------------

IndexCursor IndexTree::lowerBound(std::span<const std::uint8_t> key) const {
  return {pager_, index_.root, table_, key, IndexCursor::Bound::lower};
}

IndexCursor IndexTree::upperBound(std::span<const std::uint8_t> key) const {
  return {pager_, index_.root, table_, key, IndexCursor::Bound::upper};
}

IndexCursor IndexTree::first() const {
  return lowerBound({});
}

IndexCursor IndexTree::last() const {
  return upperBound({});
}

std::optional<RowId> IndexTree::find(std::span<const std::uint8_t> key) const {
  // Among the first entries may be ones whose keys only begin like this one: that of empty binary
  // is the beginning of all others.
  for (IndexCursor cursor = lowerBound(key); cursor.next();) {
    const auto found = cursor.key();
    if (std::ranges::equal(found, key)) return cursor.rowId();
    if (!std::ranges::equal(found.first(std::min(found.size(), key.size())), key)) break;
  }
  return std::nullopt;
}

/// The way to the leaf where `entry` is or would be. With `widen`, nodes on the way that end
/// before it are made to include it.
IndexTree::Path IndexTree::descend(std::span<const std::uint8_t> entry, bool widen) {
  Path path;
  PageNumber number = index_.root;
  for (;; ++path.depth) {
    if (path.depth > kMaxIndexDepth) raiseDamaged(number, "its index has too many levels");
    PageNumber child = 0;
    {
      const StoredIndexPage page = load(number);
      const IndexPage& entries = page.entries;
      const std::size_t at = entries.lowerBound(entry);
      path.steps[path.depth] = {number, at};
      if (entries.isLeaf()) {
        return path;
      }
      if (entries.childCount() == 0) raiseDamaged(number, "it leads to no leaf of its index");
      if (at < entries.childCount()) child = entries.child(at);
    }
    if (child == 0) {
      if (widen) widenLast(number, entry);
      const StoredIndexPage page = load(number);
      path.steps[path.depth].at = page.entries.childCount() - 1;
      child = page.entries.child(page.entries.childCount() - 1);
    }
    number = child;
  }
}

/// Whether the entry just before or just after an entry of a leaf, or a place for one, is such a
/// one for the key. `after` is the entry that follows.
bool IndexTree::isBeside(const IndexPage& leaf, std::size_t at, std::size_t after,
                         std::span<const std::uint8_t> key, IsSuch isSuch) const {
  const auto neighbourIs = [&](PageNumber number, bool last) {
    if (number == 0) return false;
    const StoredIndexPage page = load(number);
    const std::size_t count = page.entries.count();
    return page.entries.isLeaf() && count > 0 && (page.entries.*isSuch)(last ? count - 1 : 0, key);
  };
  return (at > 0 ? (leaf.*isSuch)(at - 1, key) : neighbourIs(leaf.previous(), true)) ||
         (after < leaf.count() ? (leaf.*isSuch)(after, key) : neighbourIs(leaf.next(), false));
}

void IndexTree::writeEntry(Bytes& entry, std::span<const std::uint8_t> key, RowId row) {
  entry.assign(key.begin(), key.end());
  for (int shift = 16; shift >= 0; shift -= 8) {
    entry.push_back(static_cast<std::uint8_t>(row.page >> shift));
  }
  entry.push_back(row.row);
}

/// Makes the last child of a node without a tail include `entry`: as the tail, or, being the
/// only child, by its entry.
void IndexTree::widenLast(PageNumber number, std::span<const std::uint8_t> entry) {
  IndexPageEditor node(pager_, number);
  const std::size_t last = node.count() - 1;
  const PageNumber child = node.child(last);
  node.erase(last);
  if (last > 0) {
    node.setTail(child);
  } else {
    node.insert(0, nodeEntry({entry.begin(), entry.end()}, child));
  }
}

// Adding ------------------------------------------------------------------------------------

IndexTree::Change IndexTree::insert(std::span<const std::uint8_t> key, RowId row) {
  return IndexRun(pager_, index_, table_).insert(key, row);
}

/// Puts an entry into the full leaf at the end of the path, before the entry where the path goes:
/// splits the leaf, and those pages above it that have no room for what parts its halves.
void IndexTree::split(Path& path, std::span<const std::uint8_t> entry) {
  Bytes pending(entry.begin(), entry.end());
  for (std::size_t level = path.depth;; --level) {
    if (level == 0) {
      pushRootDown(path);
      level = 1;
    }
    pending = split(path, level, pending);
    const Step parent = path.steps[level - 1];
    if (IndexPageEditor(pager_, parent.page).insert(parent.at, pending)) return;
  }
}

/// Moves the entries of the root to a new page, its only child.
void IndexTree::pushRootDown(Path& path) {
  if (path.depth >= kMaxIndexDepth) raiseDamaged(index_.root, "its index has too many levels");
  const PageNumber moved = PageAllocator(pager_).allocate();
  UsageMap(pager_, index_.ownedPages).add(moved);
  std::copy_n(pager_.read(index_.root).data(), pager_.format().pageSize, pager_.modify(moved));
  const std::uint8_t level = IndexPageEditor(pager_, moved).level();
  IndexPageEditor::initialize(pager_.format(), pager_.modify(index_.root), table_, level + 1);
  IndexPageEditor(pager_, index_.root).setTail(moved);
  std::copy_backward(path.steps.begin(), path.steps.begin() + path.depth + 1,
                     path.steps.begin() + path.depth + 2);
  path.steps[0] = {index_.root, 0};
  path.steps[1].page = moved;
  ++path.depth;
}

/// Splits a page, not the root, that has no room for `entry`. The page keeps the right part, so
/// that its entry in the node above stays right; returns the entry there of the new page, with
/// the left part, to be placed before it.
Bytes IndexTree::split(Path& path, std::size_t level, std::span<const std::uint8_t> entry) {
  const Step step = path.steps[level];
  std::vector<Bytes> entries;
  std::size_t parting = 0;
  std::uint8_t pageLevel = 0;
  {
    const IndexPageEditor page(pager_, step.page);
    entries = page.entriesWith(step.at, entry);
    parting = partingPoint(page, entries, step.at);
    pageLevel = page.level();
  }
  if (parting == 0) raiseDamaged(step.page, "its index entries are too long to be parted");
  const PageNumber added = addPageBefore(step.page, pageLevel);
  const std::span<const Bytes> all(entries);
  IndexPageEditor right(pager_, step.page);
  right.assign(all.subspan(parting));
  IndexPageEditor left(pager_, added);
  if (left.isLeaf()) {
    left.assign(all.first(parting));
    return nodeEntry(entries[parting - 1], added);
  }
  left.assign(all.first(parting));
  const Bytes last = left.separator(parting - 1);
  const PageNumber lastChild = left.child(parting - 1);
  left.erase(parting - 1);
  left.setTail(lastChild);
  partNodes(lastChild, right.child(0));
  return nodeEntry(last, added);
}

/// A new page of the index, the left neighbour of `page` and of its level.
PageNumber IndexTree::addPageBefore(PageNumber page, std::uint8_t level) {
  const PageNumber added = PageAllocator(pager_).allocate();
  UsageMap(pager_, index_.ownedPages).add(added);
  IndexPageEditor::initialize(pager_.format(), pager_.modify(added), table_, level);
  IndexPageEditor right(pager_, page);
  const PageNumber before = right.previous();
  right.setPrevious(added);
  IndexPageEditor left(pager_, added);
  left.setPrevious(before);
  left.setNext(page);
  if (before != 0) {
    load(before);
    IndexPageEditor(pager_, before).setNext(added);
  }
  return added;
}

/// Takes apart neighbours that have got different parents. Only leaves are linked throughout.
void IndexTree::partNodes(PageNumber left, PageNumber right) {
  if (load(left).entries.isLeaf()) return;
  load(right);
  IndexPageEditor(pager_, left).setNext(0);
  IndexPageEditor(pager_, right).setPrevious(0);
}

// Removing ----------------------------------------------------------------------------------

IndexTree::Change IndexTree::erase(std::span<const std::uint8_t> key, RowId row) {
  IndexRun run(pager_, index_, table_);
  const Change change = run.erase(key, row);
  run.finish();
  return change;
}

IndexTree::Change IndexTree::eraseRow(RowId row) {
  for (IndexCursor cursor = first(); cursor.next();) {
    if (cursor.rowId() == row) {
      const Bytes key(cursor.key().begin(), cursor.key().end());
      return erase(key, row);
    }
  }
  return Change::none;
}

/// Makes the tree whole after entries of the leaf at the end of the path were removed.
void IndexTree::settle(const Path& path, bool hasErasedLast) {
  if (path.depth == 0) return;
  Bytes last;
  bool isSparse = false;
  {
    const StoredIndexPage leaf = load(path.steps[path.depth].page);
    const IndexPage& entries = leaf.entries;
    if (entries.count() > 0) last = entries.entry(entries.count() - 1);
    isSparse = entries.freeSpace() > entriesRoom() / 4 * 3;
  }
  if (last.empty()) return removePage(path);
  if (hasErasedLast) restoreSeparators(last);
  if (isSparse) joinLeaf(descend(last, false));
}

/// Bytes that the entries of a page can take.
std::size_t IndexTree::entriesRoom() const {
  return pager_.format().pageSize - pager_.format().indexPage.entries;
}

/// Puts the entries of the leaf at the end of the path and those of a neighbour below the same
/// node on one page, if they fit, and frees the other.
void IndexTree::joinLeaf(const Path& path) {
  const Step parent = path.steps[path.depth - 1];
  const std::size_t children = load(parent.page).entries.childCount();
  const bool joined = parent.at > 0 && joinWithNext(path, parent.at - 1);
  if (!joined && parent.at + 1 < children) {
    joinWithNext(path, parent.at);
  }
}

/// Joins child `at` of the lowest node on the path with the one after it; false when the entries
/// of both do not fit on a page.
bool IndexTree::joinWithNext(Path path, std::size_t at) {
  Step& parent = path.steps[path.depth - 1];
  parent.at = at;
  Step& left = path.steps[path.depth];
  PageNumber right = 0;
  {
    const StoredIndexPage node = load(parent.page);
    left.page = node.entries.child(at);
    right = node.entries.child(at + 1);
  }
  std::vector<Bytes> entries;
  {
    const StoredIndexPage first = load(left.page);
    const StoredIndexPage second = load(right);
    if (first.entries.freeSpace() + second.entries.freeSpace() < entriesRoom()) return false;
    for (const IndexPage* page : {&first.entries, &second.entries}) {
      for (std::size_t i = 0; i < page->count(); ++i) {
        entries.push_back(page->entry(i));
      }
    }
  }
  IndexPageEditor joined(pager_, right);
  if (!joined.fits(entries)) return false;
  joined.assign(entries);
  removePage(path);
  return true;
}

/// Frees the leaf at the end of the path, whose entries are gone, and the nodes above that lose
/// their only child with it.
void IndexTree::removePage(const Path& path) {
  std::size_t level = path.depth;
  bool wasLast = false;
  do {
    unlink(path.steps[level].page);
    --level;
    wasLast = removeChild(path.steps[level].page, path.steps[level].at);
  } while (level > 0 && load(path.steps[level].page).entries.childCount() == 0);
  const PageNumber node = path.steps[level].page;
  if (load(node).entries.childCount() == 0) {
    initializeRoot(pager_, node, table_);
  } else if (wasLast && level > 0) {
    restoreSeparators(lastEntryBelow(node));
  }
}

/// Takes a page out of the chain of its level and frees it.
void IndexTree::unlink(PageNumber number) {
  const auto [before, after] = [&] {
    const StoredIndexPage page = load(number);
    return std::pair(page.entries.previous(), page.entries.next());
  }();
  if (before != 0) {
    load(before);
    IndexPageEditor(pager_, before).setNext(after);
  }
  if (after != 0) {
    load(after);
    IndexPageEditor(pager_, after).setPrevious(before);
  }
  UsageMap(pager_, index_.ownedPages).remove(number);
  PageAllocator(pager_).release(number);
}

/// Removes child `at` from a node. True when it was the last one, and another is now.
bool IndexTree::removeChild(PageNumber number, std::size_t at) {
  const PageNumber tail = load(number).entries.tail();
  IndexPageEditor node(pager_, number);
  const bool wasLast = at + 1 == node.childCount();
  if (at < node.count()) {
    node.erase(at);
    if (node.count() == 0 && tail != 0) {  // an only child has an entry
      node.setTail(0);
      node.insert(0, nodeEntry(lastEntryBelow(tail), tail));
    }
  } else {
    node.setTail(0);
    if (node.count() > 1) {
      const PageNumber last = node.child(node.count() - 1);
      node.erase(node.count() - 1);
      node.setTail(last);
    }
  }
  return wasLast;
}

/// Makes the entries of the nodes above `last`, the last entry of its leaf, right again: those that
/// there is room for. One that is after `last`, but before what follows, parts the leaves as well;
/// nothing that removes entries makes the file grow.
void IndexTree::restoreSeparators(Bytes last) {
  for (std::size_t changes = 0; changes <= 2 * kMaxIndexDepth; ++changes) {
    Path path = descend(last, false);
    const std::optional<std::size_t> level = staleSeparator(path, last);
    if (!level) return;
    const Step step = path.steps[*level];
    IndexPageEditor node(pager_, step.page);
    const Bytes former = node.entry(step.at);
    const Bytes entry = nodeEntry(last, node.child(step.at));
    node.erase(step.at);
    if (!node.insert(step.at, entry)) {
      node.insert(step.at, former);
      return;
    }
  }
}

/// The level of the lowest node on the path whose entry should be `last` and is not.
std::optional<std::size_t> IndexTree::staleSeparator(const Path& path,
                                                     std::span<const std::uint8_t> last) const {
  for (std::size_t level = path.depth; level-- > 0;) {
    const Step step = path.steps[level];
    const StoredIndexPage node = load(step.page);
    if (step.at < node.entries.count() &&
        !std::ranges::equal(node.entries.separator(step.at), last)) {
      return level;
    }
    if (step.at + 1 < node.entries.childCount()) return std::nullopt;
  }
  return std::nullopt;
}

Bytes IndexTree::lastEntryBelow(PageNumber number) const {
  for (std::size_t depth = 0; depth <= kMaxIndexDepth; ++depth) {
    const StoredIndexPage page = load(number);
    const IndexPage& entries = page.entries;
    if (entries.isLeaf() ? entries.count() == 0 : entries.childCount() == 0) break;
    if (entries.isLeaf()) return entries.entry(entries.count() - 1);
    number = entries.child(entries.childCount() - 1);
  }
  raiseDamaged(number, "it leads to no entry of its index");
}

}  // namespace orv::store::jet
