// Entries added to an index, or removed from it, one after another.
#pragma once

#include <optional>

#include "store/jet/index/IndexPageEditor.h"
#include "store/jet/index/IndexTree.h"

namespace orv::store::jet {

/// Changes the tree of an index. The leaf that had the last entry stays at hand, so that one that
/// belongs beside it, as the next row's mostly does, costs no way down the tree.
///
/// Lives within one transaction of the pager, in which nobody else changes the index meanwhile.
/// After erase() the tree is whole again when finish() has been called. All raise kCorruptFile
/// where pages of the index are malformed.
class IndexRun {
 public:
  /// What becomes of an entry whose key another one has.
  enum class SameKey { add, refuse };

  /// Over the tree of `index`; `table` is the page of the table's definition.
  IndexRun(Pager& pager, const RealIndex& index, PageNumber table)
      : pager_(pager), tree_(pager, index, table) {}

  /// Adds an entry; one that is there already is left alone, one that is refused too. Raises
  /// kNotSupported when the key is too long for a page.
  IndexTree::Change insert(std::span<const std::uint8_t> key, RowId row,
                           SameKey sameKey = SameKey::add);
  /// Removes an entry, which goes on standing in its leaf, for whoever reads the index by another
  /// way, until the next insert() or finish().
  IndexTree::Change erase(std::span<const std::uint8_t> key, RowId row);
  /// Writes what was removed; frees the leaf at hand, or joins it with a neighbour, if it has
  /// become empty, or nearly so.
  void finish();

 private:
  std::optional<std::size_t> placeOnLeaf();
  std::size_t openLeaf(bool widen);
  void rememberEnds();
  bool isBeyondLeaf(std::size_t at, std::span<const std::uint8_t> key) const;
  void dropErased();

  Pager& pager_;
  IndexTree tree_;
  Bytes entry_;  ///< the one that is being added or removed

  std::optional<IndexPageEditor> leaf_;
  const std::uint8_t* leafBytes_ = nullptr;
  IndexTree::Path path_;  ///< to the leaf
  Bytes end_;             ///< no entry of the leaf is greater; empty: it is the last leaf
  bool isFirst_ = true;   ///< it is the first leaf
  /// Entries of the leaf, from the first on and before the second, that are removed but still stand
  /// there: those of a batch of rows go in one piece.
  std::size_t erasedFrom_ = 0;
  std::size_t erasedTo_ = 0;
  bool hasErased_ = false;
  bool hasErasedLast_ = false;  ///< the greatest entry of the leaf
};

}  // namespace orv::store::jet
