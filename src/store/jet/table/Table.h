// A table: its rows and their indexes.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/index/IndexTree.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/Pager.h"
#include "store/jet/row/Row.h"

namespace orv::store::jet {

/// Visits every row of a table, in the order of the pages. Some pages are read ahead under one
/// lock of the file; what this process has changed since is read anew.
class TableScan {
 public:
  TableScan(Pager& pager, std::shared_ptr<const TableDefinition> definition);
  /// Goes to the next row; false after the last one.
  bool next();
  /// Goes between `row`, which may be gone, and the rows after it.
  void seekAfter(RowId row);
  /// The current row; valid until the next call of next().
  const RowView& row() const { return row_; }
  RowId rowId() const { return rowId_; }

 private:
  bool nextPage();
  void readAhead();

  Pager* pager_;
  std::shared_ptr<const TableDefinition> definition_;
  PageNumber nextPage_ = 0;
  std::vector<PageRef> ahead_{};    ///< pages after the current one
  std::size_t aheadUsed_ = 0;       ///< how many of them have been current
  std::uint64_t aheadVersion_ = 0;  ///< of the pager when they were read
  PageRef page_{};
  DataPage rows_{};  ///< of `page_`
  std::uint16_t nextRow_ = 0;
  RowId rowId_;
  RowView row_;
};

/// A row, and where its content is.
struct StoredRow {
  RowId content;
  RowView row;
};

/// The rows of one table. Changes keep every index of the table right and are made within a
/// transaction of the pager (their own, or the caller's).
class Table {
 public:
  Table(std::shared_ptr<Pager> pager, std::shared_ptr<const TableDefinition> definition);

  const std::string& name() const { return definition_->name; }
  const TableDefinition& definition() const { return *definition_; }
  std::shared_ptr<const TableDefinition> sharedDefinition() const { return definition_; }
  Pager& pager() const { return *pager_; }
  /// Goes on with the definition that the table has got. The former one lives on, since rows
  /// that were read before refer to it.
  void changeDefinition(std::shared_ptr<const TableDefinition> definition);

  /// The number of rows that the file says the table has: other programs do not always keep it.
  std::uint32_t rowCount() const;
  /// The number of rows that the table's pages have; reads all of them.
  std::size_t countRows() const;
  /// The number of different keys of an index as the definition has it. Not every program keeps it.
  std::uint32_t keyCount(std::size_t realIndex) const;
  TableScan scan() const { return TableScan(*pager_, definition_); }
  /// The row at `id`; none when it was deleted or never was.
  std::optional<RowView> row(RowId id) const;
  IndexTree index(std::size_t realIndex) const;

  /// Remembers that an index cannot be read, so that readers of rows do without it.
  void distrust(std::size_t realIndex) const { distrusted_.insert(realIndex); }
  const std::set<std::size_t>& distrusted() const { return distrusted_; }

  /// The next autonumber, not handed out again while this object lives (it is shared by all
  /// connections of the process).
  std::int32_t reserveAutoNumber();

  /// Adds a row of one value a column (Null where none). Autonumber columns left Null get their
  /// number or GUID. Raises kDuplicateKey when a unique index has the key or a required column is
  /// Null, kTypeMismatch or kOverflow when a value does not fit its column.
  RowId insert(std::span<const Value> values);
  void update(RowId id, std::span<const Value> values);
  void erase(RowId id);

 private:
  friend class RowChanges;
  /// The row at `id`, whoever holds a lock; none when it was deleted or never was.
  std::optional<StoredRow> find(RowId id) const;

  std::int32_t lastAutoNumber() const;
  void raiseLastAutoNumber(std::int32_t number);
  void changeRowCount(int change);
  void changeKeyCount(const RealIndex& index, std::int32_t change);

  std::shared_ptr<Pager> pager_;
  std::shared_ptr<const TableDefinition> definition_;
  std::vector<std::shared_ptr<const TableDefinition>> formerDefinitions_;
  mutable std::set<std::size_t> distrusted_;  ///< real indexes
  std::int32_t reserved_ = 0;
  PageNumber insertHint_ = 0;  ///< the page that took the last row
};

}  // namespace orv::store::jet
