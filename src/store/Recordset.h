// Rows of a table, a saved query or a SELECT statement, one of them current.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/Schema.h"
#include "store/Value.h"

namespace orv::store {

class Connection;

enum class CursorType {
  forwardOnly,  ///< rows once, in order; no count
  keyset,       ///< the set of rows is fixed, their values are read when visited
  dynamic,      ///< rows are read when visited
  static_,      ///< rows counted, any order of visiting; those of a statement are a snapshot
};

enum class LockType {
  readOnly,
  optimistic,       ///< update() commits the current row
  batchOptimistic,  ///< rows are kept aside until updateBatch() commits them all
};

/// A cursor over rows. Fields are found by name without regard to case, or by 0-based position.
///
/// A new record set stands on its first row, or at the end when there is none. After addNew()
/// the current row is the new one: its fields can be set and read (an autonumber column already
/// has its key), and update() adds it to the table; with batchOptimistic updateBatch() adds all
/// such rows in one commit. Whatever a commit writes is on the disk when the call returns, whole;
/// a call that raises has changed nothing.
///
/// Raises kNoCurrentRecord where a row is needed and none is current, kItemNotFound for an
/// unknown field, kObjectClosed after close(), kReadOnlyStore for a change that the record set
/// or the file does not allow, kDuplicateKey when a unique index refuses a row.
class Recordset {
 public:
  virtual ~Recordset() = default;

  virtual bool eof() const = 0;
  virtual bool bof() const = 0;
  virtual void moveFirst() = 0;
  virtual void moveLast() = 0;
  virtual void moveNext() = 0;
  virtual void movePrevious() = 0;

  /// Number of rows. A forward-only or dynamic record set over SQL counts by reading on.
  virtual std::int64_t recordCount() = 0;
  /// 0-based position of the current row.
  virtual std::int64_t position() const = 0;
  /// Goes to the row at a 0-based position (static and keyset cursors).
  virtual void moveTo(std::int64_t position) = 0;

  /// Searches forward, the current row included, for the first row that meets
  /// `column operator value` (=, <>, <, <=, >, >=, LIKE; text between apostrophes, dates between
  /// number signs; a number between apostrophes matches a numeric column). Stands at the end
  /// when there is none. Text compares without regard to case. Raises kSyntaxError.
  virtual void find(std::string_view criterion) = 0;

  virtual const std::vector<ColumnInfo>& fields() const = 0;
  /// Position of a field. Raises kItemNotFound.
  virtual std::size_t fieldIndex(std::string_view name) const = 0;
  virtual Value value(std::size_t field) const = 0;
  virtual void setValue(std::size_t field, Value value) = 0;

  virtual void addNew() = 0;
  virtual void update() = 0;
  virtual void updateBatch() = 0;
  virtual void cancelUpdate() = 0;
  virtual void deleteRow() = 0;
  virtual void close() = 0;

  Value value(std::string_view name) const { return value(fieldIndex(name)); }
  void setValue(std::string_view name, Value v) { setValue(fieldIndex(name), std::move(v)); }
};

}  // namespace orv::store
