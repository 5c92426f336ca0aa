// One table, copied.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <vector>

#include "store/CompactReport.h"
#include "store/jet/compact/CopySource.h"
#include "store/jet/compact/CopyTarget.h"
#include "store/jet/compact/DefinitionEditor.h"
#include "store/jet/compact/RowFiller.h"
#include "store/jet/compact/TableNumbers.h"
#include "store/jet/definition/DefinitionPages.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/index/EntrySorter.h"

namespace orv::store::jet {

/// Copies the rows of a table with their long values, makes its indexes and writes its definition,
/// to the page that `numbers` gives it.
class TableCopy {
 public:
  TableCopy(CopySource& source, CopyTarget& target, const TableNumbers& numbers,
            CompactReport& report, std::shared_ptr<const TableDefinition> table);
  void run();

 private:
  /// The pages of one column's long values, and where its values are now, in the order of the rows.
  struct LongColumn {
    const Column* column;
    RowFiller pages;
    std::deque<LongValueDefinition> places{};
  };
  /// An index of which the keys are made, or taken over where that cannot be.
  struct Index {
    const RealIndex* index;
    EntrySorter entries{};
    bool keysAreKnown = true;
    bool unique = index->unique;
    bool required = index->required;
  };

  void copyLongValues();
  void copyRows();
  void copyRow(RowId former, const RowView& row);
  void placeLongValues(RowId former, const RowView& row);
  void setNull(const Column& column, const RowView& row);
  void renumber(const RowView& row);
  void addEntries(RowId row);
  void addEntry(Index& index, RowId row);
  void takeEntriesOver(Index& index);
  void writeIndex(Index& index);
  void writeDefinition();

  CopySource& source_;
  CopyTarget& target_;
  const TableNumbers& numbers_;
  CompactReport& report_;
  std::shared_ptr<const TableDefinition> table_;
  PageNumber page_;  ///< of the new definition
  DefinitionPages definition_;
  DefinitionEditor editor_;
  RowFiller rows_;
  std::vector<LongColumn> longColumns_{};
  std::vector<Index> indexes_{};
  std::vector<const Column*> numbered_{};  ///< columns with numbers of tables
  std::vector<bool> isKey_;                ///< by column
  Bytes row_{};                            ///< the current one, as it is to be
  std::vector<Value> values_;              ///< its values in columns of indexes
  std::uint32_t rowCount_ = 0;
  // Where rows were and are, for indexes whose entries are taken over.
  bool needsPlaces_ = false;
  std::vector<RowId> formerPlaces_{};
  std::vector<RowId> places_{};
};

}  // namespace orv::store::jet
