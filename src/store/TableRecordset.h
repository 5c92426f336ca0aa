// A record set whose rows are those of one table.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "store/RecordsetBase.h"
#include "store/TableRows.h"
#include "store/jet/table/RowChanges.h"
#include "store/jet/table/RowReader.h"
#include "store/jet/table/Table.h"

namespace orv::store {

/// Rows of one table: all, or those that a statement selected. Values are read when a row is
/// visited; a row that was deleted meanwhile is passed over.
class TableRecordset final : public RecordsetBase {
 public:
  TableRecordset(std::shared_ptr<jet::Table> table, CursorType cursor, LockType lock);
  TableRecordset(std::shared_ptr<jet::Table> table, const std::vector<jet::RowId>& rows,
                 LockType lock);
  ~TableRecordset() override = default;

  bool eof() const override;
  bool bof() const override;
  void moveFirst() override { moveTo(0); }
  void moveLast() override;
  void moveNext() override;
  void movePrevious() override;
  std::int64_t recordCount() override;
  std::int64_t position() const override;
  void moveTo(std::int64_t position) override;
  void find(std::string_view criterion) override;

  using Recordset::setValue;
  using Recordset::value;
  Value value(std::size_t field) const override;
  void setValue(std::size_t field, Value value) override;
  void addNew() override;
  void update() override;
  void updateBatch() override;
  void cancelUpdate() override;
  void deleteRow() override;
  void close() override;

 private:
  /// The row that is being added or changed.
  struct Edit {
    std::vector<Value> values;
    bool isNew;
  };
  /// A change kept aside for updateBatch().
  struct Pending {
    enum class Kind { insert, update, erase } kind;
    jet::RowId row{};
    std::vector<Value> values{};
  };

  void standOn(std::size_t position);
  /// False for a row that has been deleted, whose position what follows takes.
  bool standAt(std::size_t position, jet::RowId row);
  bool standOnRow(jet::RowId row, std::optional<std::size_t> position);
  void standAtEnd();
  void saveEdit();
  bool isAdding() const { return edit_ && edit_->isNew; }
  void needUpdatable() const;
  std::vector<Value> currentValues() const;
  Value firstValue(const jet::Column& column) const;
  std::optional<std::size_t> indexFor(std::size_t field) const;
  std::optional<Bytes> beginningOfKey(std::size_t index, const Value& value) const;
  std::optional<jet::RowId> firstInIndex(std::size_t index, const Bytes& key,
                                         const struct Criterion& criterion, std::size_t field,
                                         jet::RowId from) const;
  jet::RowId commit(const std::vector<Pending>& changes);
  static jet::RowId apply(const Pending& change, jet::RowChanges& rows);

  std::shared_ptr<jet::Table> table_;
  bool forwardOnly_;
  LockType lock_;
  mutable TableRows rows_;
  jet::RowReader reader_;
  /// Of the current row; none when it was found some other way than by its position.
  mutable std::optional<std::size_t> position_ = 0;
  jet::RowId rowId_{};               ///< the current row, or the one that was deleted
  std::optional<jet::RowView> row_;  ///< the current row; none at the end and after a deletion
  bool atEnd_ = true;
  bool beforeFirst_ = false;
  std::optional<Edit> edit_;
  std::vector<Pending> pending_;
  /// What new rows hold at first, but for the columns of which each row gets another value.
  std::vector<Value> firstValues_;
  std::shared_ptr<const jet::TableDefinition> firstOf_;  ///< by which they were made
  /// Keeps other processes from taking the autonumber that a new row has been given.
  std::optional<jet::Pager::WriteLock> numberLock_;
};

}  // namespace orv::store
