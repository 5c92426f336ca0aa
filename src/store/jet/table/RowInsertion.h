// Rows added to a table one after another.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/index/IndexRun.h"
#include "store/jet/page/RowId.h"
#include "store/jet/row/RowSpace.h"
#include "store/jet/table/Table.h"

namespace orv::store::jet {

/// Adds rows within a transaction: the page that takes them and the leaf of each index stay at
/// hand from one row to the next, and the table's counts are written once, by finish(). Nobody
/// else changes the table meanwhile. After a failure the transaction has to be undone.
class RowInsertion {
 public:
  explicit RowInsertion(Table& table);

  /// As Table::insert().
  RowId add(std::span<const Value> values);
  /// Writes what has changed in the table's counts. Nothing is added afterwards.
  void finish();

 private:
  struct Index {
    const RealIndex& index;
    IndexRun run;
    std::int32_t addedKeys = 0;
  };

  void addEntry(Index& index, std::span<const Value> row, RowId id);
  bool hasOtherForm(const RealIndex& index, std::span<const Value> row) const;

  Table& table_;
  RowSpace space_;
  std::vector<Index> indexes_;
  int added_ = 0;
  std::int32_t highestNumber_ = 0;  ///< of the autonumbers given
};

}  // namespace orv::store::jet
