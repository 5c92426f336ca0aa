// Checking one index of a table.
#pragma once

#include <optional>
#include <vector>

#include "store/jet/check/CheckContext.h"
#include "store/jet/check/RowKeys.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/index/IndexPage.h"

namespace orv::store::jet {

/// Walks the tree of an index from its root: every page is the index's own, entries ascend from
/// the first leaf to the last, leaves are linked in that order, each node's entry parts what is
/// below it from what follows, and the entries are exactly those that the rows call for.
class IndexCheck {
 public:
  IndexCheck(CheckContext& context, const TableDefinition& table, const RealIndex& index,
             RowKeys& keys);
  void run();

 private:
  void walk(PageNumber page, std::size_t depth);
  void checkNode(const StoredIndexPage& node, std::size_t depth);
  void checkSeparator(const StoredIndexPage& node, std::size_t at);
  void compareSeparators();
  void checkLeaf(const StoredIndexPage& leaf, std::size_t depth);
  void checkLinks(const StoredIndexPage& leaf);
  void checkEntry(const CheckPlace& place, std::size_t at);
  void checkFreeSpace(const StoredIndexPage& page);
  void findMissingEntries();
  void checkMap();

  /// The entry of a node that comes after all that is below it.
  struct Separator {
    PageNumber node;
    PageNumber child;
    std::size_t at;
    Bytes entry;
  };

  CheckContext& context_;
  const TableDefinition& table_;
  const RealIndex& index_;
  RowKeys& keys_;
  CheckPlace place_;
  PageLedger::User user_;
  Bytes entry_{};                        ///< the current entry of a leaf
  Bytes previous_{};                     ///< the one before it; empty before the first
  std::vector<Separator> separators_{};  ///< that the next entry must come after
  bool broken_ = false;                  ///< what comes just before this place could not be read
  std::optional<std::size_t> leafDepth_{};
  PageNumber lastLeaf_ = 0;
  PageNumber lastLeafsNext_ = 0;
};

/// The name of the index that a tree serves; the first one's if there are several.
std::string_view nameOfIndex(const TableDefinition& table, const RealIndex& index);

}  // namespace orv::store::jet
