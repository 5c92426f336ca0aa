// The B-tree of one index.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/Pager.h"
#include "store/jet/RowId.h"
#include "store/jet/TableDefinition.h"

namespace orv::store::jet {

/// Goes through the entries of an index in the order of their keys.
class IndexCursor {
 public:
  explicit IndexCursor(Pager& pager) : pager_(&pager) {}

  /// Goes to the next entry (or the previous one); false past the last (first) one.
  bool next();
  bool previous();
  /// Key bytes of the current entry, without the row pointer.
  std::span<const std::uint8_t> key() const;
  RowId rowId() const;

 private:
  friend class IndexTree;
  // Position: a leaf and an entry on it, or before the first entry. The layout of what is kept
  // here belongs to the implementation.
  Pager* pager_;
  PageRef leaf_;
  std::vector<std::uint8_t> entry_;
  std::size_t at_ = 0;
  bool started_ = false;
};

/// Entries of key bytes and row pointers in a B-tree of pages with shared prefixes, as the file
/// format has them. Duplicate keys are told apart by their row pointers. Changes need a
/// transaction of the pager.
class IndexTree {
 public:
  /// The tree of `index`; `table` is the page of the table's definition, which owns its pages.
  IndexTree(Pager& pager, const RealIndex& index, PageNumber table);

  /// Adds an entry. Splits pages as needed; the root stays on its page.
  void insert(std::span<const std::uint8_t> key, RowId row);
  /// Removes an entry; false when there is none. Pages that become empty are freed.
  bool erase(std::span<const std::uint8_t> key, RowId row);

  /// A row whose entry has exactly this key.
  std::optional<RowId> find(std::span<const std::uint8_t> key) const;

  /// Cursors that stand before the first entry; at whose next() the first entry not less than
  /// (greater than) `key` comes, taking `key` as a prefix of the entry's key bytes; or whose
  /// previous() is the last entry.
  IndexCursor first() const;
  IndexCursor lowerBound(std::span<const std::uint8_t> key) const;
  IndexCursor upperBound(std::span<const std::uint8_t> key) const;
  IndexCursor last() const;

  /// Makes `page` an empty leaf, the root of a new tree.
  static void initializeRoot(Pager& pager, PageNumber page, PageNumber table);

 private:
  Pager& pager_;
  const RealIndex& index_;
  PageNumber table_;
};

}  // namespace orv::store::jet
