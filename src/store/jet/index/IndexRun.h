// Entries added to an index one after another.
#pragma once

#include <optional>

#include "store/jet/index/IndexPageEditor.h"
#include "store/jet/index/IndexTree.h"

namespace orv::store::jet {

/// Adds entries to the tree of an index. The leaf that took the last entry stays at hand, so that
/// one that belongs beside it, as the next row's mostly does, costs no way down the tree.
///
/// Lives within one transaction of the pager, in which nobody else changes the index meanwhile.
class IndexRun {
 public:
  /// What becomes of an entry whose key another one has.
  enum class SameKey { add, refuse };

  /// Over the tree of `index`; `table` is the page of the table's definition.
  IndexRun(Pager& pager, const RealIndex& index, PageNumber table)
      : pager_(pager), tree_(pager, index, table) {}

  /// Adds an entry; one that is there already is left alone, one that is refused too. Raises
  /// kNotSupported when the key is too long for a page, kCorruptFile where pages of the index are
  /// malformed.
  IndexTree::Change insert(std::span<const std::uint8_t> key, RowId row,
                           SameKey sameKey = SameKey::add);

 private:
  void makeEntry(std::span<const std::uint8_t> key, RowId row);
  std::optional<std::size_t> placeOnLeaf();
  std::size_t openLeaf();
  void rememberEnd();

  Pager& pager_;
  IndexTree tree_;
  Bytes entry_;  ///< the one that is being added

  std::optional<IndexPageEditor> leaf_;
  const std::uint8_t* leafBytes_ = nullptr;
  IndexTree::Path path_;  ///< to the leaf
  Bytes end_;             ///< no entry of the leaf is greater; empty: it is the last leaf
};

}  // namespace orv::store::jet
