// The B-tree of one index.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/index/IndexCursor.h"
#include "store/jet/index/IndexPage.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Entries of key bytes and row pointers in a B-tree of pages with shared prefixes, as the file
/// format has them. Duplicate keys are told apart by their row pointers. Changes need a
/// transaction of the pager. All raise kCorruptFile where pages of the index are malformed.
///
/// The root stays on its page, which the table's definition names. A node has an entry for each
/// of its children, equal to the last entry below it; for its last child it usually has a tail
/// pointer instead, so that adding at the end of an index changes nothing but the last leaf.
class IndexTree {
 public:
  /// The tree of `index`; `table` is the page of the table's definition, which owns its pages.
  IndexTree(Pager& pager, const RealIndex& index, PageNumber table);

  /// How a change of an entry changes the number of different keys.
  enum class Change {
    none,   ///< there was nothing to change
    entry,  ///< an entry whose key another one has too
    key,    ///< the only entry of its key
  };

  /// Adds an entry; one that is there already is left alone. Raises kNotSupported when the key
  /// is too long for a page.
  Change insert(std::span<const std::uint8_t> key, RowId row);
  /// Removes an entry. Pages that become empty are freed, nearly empty leaves joined with a
  /// neighbour.
  Change erase(std::span<const std::uint8_t> key, RowId row);
  /// Removes the entry of a row, whatever its key: all entries are searched for it.
  Change eraseRow(RowId row);

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
  friend class IndexRun;
  struct Step {
    PageNumber page;
    std::size_t at;  ///< in a node, the entry of the child, or their number for the tail
  };
  /// The way from the root to a leaf.
  struct Path {
    std::array<Step, kMaxIndexDepth + 1> steps{};
    std::size_t depth = 0;  ///< level of the leaf in `steps`
  };

  StoredIndexPage load(PageNumber page) const { return {pager_, page, table_}; }
  Path descend(std::span<const std::uint8_t> entry, bool widen);
  using IsSuch = bool (IndexPage::*)(std::size_t i, std::span<const std::uint8_t> key) const;
  bool isBeside(const IndexPage& leaf, std::size_t at, std::size_t after,
                std::span<const std::uint8_t> key, IsSuch isSuch) const;
  static void writeEntry(Bytes& entry, std::span<const std::uint8_t> key, RowId row);
  void widenLast(PageNumber node, std::span<const std::uint8_t> entry);

  void split(Path& path, std::span<const std::uint8_t> entry);
  Bytes split(Path& path, std::size_t level, std::span<const std::uint8_t> entry);
  void pushRootDown(Path& path);
  PageNumber addPageBefore(PageNumber page, std::uint8_t level);
  void partNodes(PageNumber left, PageNumber right);

  void settle(const Path& path, bool hasErasedLast);
  std::size_t entriesRoom() const;
  void joinLeaf(const Path& path);
  bool joinWithNext(Path path, std::size_t at);
  void removePage(const Path& path);
  void unlink(PageNumber page);
  bool removeChild(PageNumber node, std::size_t at);
  void restoreSeparators(Bytes last);
  std::optional<std::size_t> staleSeparator(const Path& path,
                                            std::span<const std::uint8_t> last) const;
  Bytes lastEntryBelow(PageNumber page) const;

  Pager& pager_;
  const RealIndex& index_;
  PageNumber table_;
};

}  // namespace orv::store::jet
