// The rows of a table, by one of the ways that a plan can choose.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <optional>
#include <span>

#include "store/jet/table/Table.h"
#include "store/sql/run/ColumnLookup.h"
#include "store/sql/run/IndexPlan.h"

namespace orv::store::sql {

class RowSource {
 public:
  virtual ~RowSource() = default;
  /// Goes to the next row; false after the last one.
  virtual bool next() = 0;
  /// The current row, until the next call of next().
  virtual const jet::RowView& row() const = 0;
  virtual jet::RowId rowId() const = 0;
};

/// The values that SQLite has for the constraints that a plan uses, in their order.
using BoundValues = std::span<sqlite3_value*>;

/// Every row, page by page.
std::unique_ptr<RowSource> scanRows(const jet::Table& table);

/// The rows that an index has for the values (and perhaps more of them, where a value has no
/// key), in the order of its keys or backwards. `kinds` are those of the plan's constraints.
std::unique_ptr<RowSource> indexedRows(std::shared_ptr<const jet::Table> table, std::size_t index,
                                       bool backward, std::span<const Constraint::Kind> kinds,
                                       BoundValues values);

/// The rows that a lookup has for the value; all rows where the value has no key.
std::unique_ptr<RowSource> lookedUpRows(std::shared_ptr<const jet::Table> table, std::size_t column,
                                        std::shared_ptr<const ColumnLookup> lookup,
                                        sqlite3_value* value);

}  // namespace orv::store::sql
