// Changes to the rows of a table, one after another.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "store/Value.h"
#include "store/jet/index/IndexRun.h"
#include "store/jet/page/RowId.h"
#include "store/jet/row/RowSpace.h"
#include "store/jet/table/Table.h"

namespace orv::store::jet {

/// Adds, changes and deletes rows, and keeps every index of the table right. The page that took the
/// last row and the leaf of each index stay at hand from one row to the next.
///
/// Lives within a transaction, in which nobody else changes the table meanwhile. The indexes and
/// the table's counts are whole when finish() has been called; after a failure the transaction has
/// to be undone.
class RowChanges {
 public:
  explicit RowChanges(Table& table);

  /// As those of Table.
  RowId insert(std::span<const Value> values);
  void update(RowId id, std::span<const Value> values);
  void erase(RowId id);
  /// Nothing is changed afterwards.
  void finish();

 private:
  struct Index {
    const RealIndex& index;
    IndexRun run;
    std::int32_t newKeys = 0;  ///< by how much the number of different keys has grown
  };

  std::span<const Value> fit(std::span<const Value> values, bool newRow);
  std::optional<Value> makeValue(const Column& column);
  void readErased(const RowView& row);
  Bytes keyOf(const RealIndex& index, std::span<const Value> values) const;
  void addEntry(Index& index, std::span<const Value> row, RowId id);
  void eraseEntry(Index& index, std::span<const Value> row, RowId id);
  IndexTree::Change eraseAnyForm(Index& index, std::span<const Value> row, RowId id);
  bool hasOtherForm(const RealIndex& index, std::span<const Value> row) const;
  void writeContent(RowId home, RowId content, const Bytes& row);
  void eraseLongValues(const RowView& row, PageNumber page);
  std::string describe(const RealIndex& index) const;

  Table& table_;
  const TableDefinition& definition_;
  Pager& pager_;
  ChangeObserver* observer_;  ///< null where nobody wants to know
  RowSpace space_;
  std::vector<Index> indexes_;
  std::vector<std::size_t> numbered_;  ///< columns with automatic numbers
  std::vector<std::size_t> keyed_;     ///< columns of any index
  std::vector<std::size_t> unkeyed_;   ///< all others
  std::vector<const Column*> long_;    ///< columns with long values
  std::vector<Value> fitted_;          ///< the row that was fitted last
  std::vector<Value> erased_;          ///< the row that was deleted last, its key columns at least
  int newRows_ = 0;
  std::int32_t highestNumber_ = 0;  ///< of the autonumbers given
};

}  // namespace orv::store::jet
