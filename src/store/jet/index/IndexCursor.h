// A place among the entries of an index.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "store/Value.h"
#include "store/jet/index/IndexPage.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Goes through the entries of an index in the order of their keys. It stands on an entry, or
/// between two. The index may be changed meanwhile: a cursor goes on from the key where it
/// stood, and may or may not show entries that were added to or removed from the page under it.
/// Raises kCorruptFile where pages of the index are malformed.
class IndexCursor {
 public:
  /// Goes to the next entry (or the previous one). False past the last (first) one: the cursor
  /// then stands behind it (before it).
  bool next();
  bool previous();
  /// Key bytes of the current entry, without the row pointer.
  std::span<const std::uint8_t> key() const;
  RowId rowId() const;

 private:
  friend class IndexTree;
  enum class Bound { lower, upper };

  /// The cursor between the entries that are less than `key` (with `upper`, those that begin
  /// with it too) and the others.
  IndexCursor(Pager& pager, PageNumber root, PageNumber table, std::span<const std::uint8_t> key,
              Bound bound);
  void seek();
  /// Seeks again when the leaf has been changed since it was read, so that its neighbours may
  /// be others now.
  void refresh();
  /// Goes to a neighbour of the leaf; `direction` is 1 or -1.
  void cross(PageNumber neighbour, int direction);
  void settle();
  std::shared_ptr<const StoredIndexPage> load(PageNumber page) const;

  Pager* pager_;
  PageNumber root_;
  PageNumber table_;
  /// The current entry; or, on none, what the cursor stands before or (`upper`) behind.
  Bytes entry_;
  Bound bound_;
  bool onEntry_ = false;
  std::shared_ptr<const StoredIndexPage> leaf_{};
  std::size_t at_ = 0;             ///< the entry of `leaf_` under the cursor, or after it
  std::int64_t leavesPassed_ = 0;  ///< forward since the last search: more than all is a circle
};

}  // namespace orv::store::jet
