// The rows of a SELECT statement, one after the other.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "store/Schema.h"
#include "store/Value.h"
#include "store/jet/table/RowReader.h"
#include "store/sql/run/PreparedStatements.h"

namespace orv::store::sql {

class SqlEngine;

/// Reads forward once. Rows are read ahead in batches, each under a Pager::ReadLock that is
/// released with the batch: other processes can write while the caller works on the rows, and a
/// later batch sees what they wrote: a row may then have other values than those that it was chosen
/// by. Destroy or use up the cursor to end the query.
class SqlCursor {
 public:
  ~SqlCursor();
  SqlCursor(const SqlCursor&) = delete;
  SqlCursor& operator=(const SqlCursor&) = delete;

  /// The columns of the result: for one of a table its type and size, for an expression its
  /// type, which is text where that depends on the row.
  const std::vector<ColumnInfo>& columns() const { return columns_; }

  /// Goes to the next row; false after the last one. Raises what reading the file raises, and
  /// kTypeMismatch, kOverflow, kInvalidCall for a value that a function cannot take.
  bool step();

  /// A value of the current row, by 0-based position.
  const Value& value(std::size_t column) const { return batch_[at_ + column]; }

  /// Instead of step(): reads a batch of rows to the end of `values`, row by row, and returns their
  /// number, 0 after the last one. Raises as step() does; `values` is as before then.
  std::size_t readRows(std::vector<Value>& values);

 private:
  friend class SqlEngine;

  SqlCursor(std::shared_ptr<SqlEngine> engine, PreparedStatement statement);
  std::size_t readBatch(std::vector<Value>& values);
  void readRow(std::vector<Value>& values);

  std::shared_ptr<SqlEngine> engine_;
  PreparedStatement statement_;
  /// Of the table, and of its rows, where the statement gives their places.
  std::shared_ptr<const jet::TableDefinition> definition_;
  std::optional<jet::RowReader> reader_;
  std::vector<ColumnInfo> columns_;
  std::vector<Value> batch_;  ///< what step() has read, row by row
  std::size_t at_ = 0;        ///< of the current row's first value
  std::size_t batchRows_ = 64;
  bool finished_ = false;
};

}  // namespace orv::store::sql
