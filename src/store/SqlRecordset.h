// A record set over a SELECT statement or a saved query.
#pragma once

#include <memory>
#include <vector>

#include "store/RecordsetBase.h"
#include "store/sql/SqlCursor.h"

namespace orv::store {

/// Rows of a statement, which cannot be changed. They are read from the statement as far as
/// somebody has gone; all but a forward-only record set keep them, so that every row can be
/// visited again.
class SqlRecordset final : public RecordsetBase {
 public:
  SqlRecordset(std::unique_ptr<sql::SqlCursor> cursor, CursorType type);

  bool eof() const override;
  bool bof() const override;
  void moveFirst() override;
  void moveLast() override;
  void moveNext() override;
  void movePrevious() override;
  std::int64_t recordCount() override;
  std::int64_t position() const override { return static_cast<std::int64_t>(position_); }
  void moveTo(std::int64_t position) override;

  using Recordset::setValue;
  using Recordset::value;
  Value value(std::size_t field) const override;
  void setValue(std::size_t field, Value value) override;
  void addNew() override;
  void update() override { needOpen(); }
  void updateBatch() override { needOpen(); }
  void cancelUpdate() override { needOpen(); }
  void deleteRow() override;
  void close() override;

 private:
  /// Reads on until the row at `position` has been read; false when there are fewer.
  bool readTo(std::size_t position);
  void standOn(std::size_t position);

  std::unique_ptr<sql::SqlCursor> cursor_;  ///< none when all rows have been read
  bool keepsRows_;
  std::vector<Value> kept_;  ///< values of the rows that are kept, row by row
  std::size_t rowsRead_ = 0;
  std::size_t position_ = 0;
  bool beforeFirst_ = false;
  bool atEnd_ = false;
};

}  // namespace orv::store
