// Tables of an Access database as virtual tables of SQLite.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "store/jet/table/Table.h"
#include "store/sql/functions/Callbacks.h"
#include "store/sql/functions/TextOrder.h"
#include "store/sql/run/ColumnLookup.h"
#include "store/sql/run/RowSource.h"

namespace orv::store::sql {

/// The SQLite module `jet`: read-only virtual tables, each over one table of the file, with
/// columns c0, c1, ... Text has the collation JET, fixed-point numbers pass as text with the
/// collation JETDECIMAL, dates as days, true as -1, GUIDs as text.
///
/// Equality, ranges and order go to an index of the table where one fits; SQLite checks every
/// constraint again. What the callbacks raise is kept in `failure`.
class TableModule {
 public:
  TableModule(sqlite3* db, const TextOrder& textOrder, CallbackFailure& failure);

  /// The name of the virtual table over a table; made when it is asked for first.
  std::string nameOf(const std::shared_ptr<jet::Table>& table);

  /// Rows that queries have visited in tables so far: what tells an index from a scan.
  std::uint64_t rowsRead() const { return rowsRead_; }

  /// The row at `id` if it is the one that a query has just come to, until the query goes on; else
  /// null.
  const jet::RowView* visitedRow(jet::RowId id) const;

 private:
  friend struct ModuleCallbacks;

  sqlite3* db_;
  const TextOrder& textOrder_;
  CallbackFailure& failure_;
  ColumnLookups lookups_;
  struct Entry {
    std::shared_ptr<jet::Table> table;
    std::shared_ptr<const jet::TableDefinition> definition;  ///< which SQLite knows
  };
  std::map<int, Entry> tables_;  ///< by the number in their names
  int lastNumber_ = 0;
  std::uint64_t rowsRead_ = 0;
  const RowSource* visited_ = nullptr;  ///< stands on the row that was visited last
};

}  // namespace orv::store::sql
