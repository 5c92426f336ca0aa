#include "store/TableRecordset.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/Criterion.h"
#include "store/DefaultValue.h"
#include "store/StoreError.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/row/FitValue.h"
#include "store/jet/table/AutoGuid.h"

namespace orv::store {
namespace {

std::vector<ColumnInfo> describe(const jet::TableDefinition& definition) {
  std::vector<ColumnInfo> columns;
  for (const jet::Column& column : definition.columns) {
    columns.push_back(jet::describe(column));
  }
  return columns;
}

/// Whether the default is a call, like Now().
bool isOfTheMoment(const jet::Column& column) {
  return column.defaultValue && column.defaultValue->find("()") != std::string::npos;
}

}  // namespace

TableRecordset::TableRecordset(std::shared_ptr<jet::Table> table, CursorType cursor, LockType lock)
    : RecordsetBase(describe(table->definition())),
      table_(table),
      forwardOnly_(cursor == CursorType::forwardOnly),
      lock_(lock),
      rows_(table),
      reader_(table) {
  standOn(0);
}

TableRecordset::TableRecordset(std::shared_ptr<jet::Table> table,
                               const std::vector<jet::RowId>& rows, LockType lock)
    : RecordsetBase(describe(table->definition())),
      table_(table),
      forwardOnly_(false),
      lock_(lock),
      rows_(table, rows),
      reader_(table) {
  standOn(0);
}

// Visiting ----------------------------------------------------------------------------------

void TableRecordset::standOn(std::size_t position) {
  while (const auto id = rows_.at(position)) {
    if (standAt(position, *id)) {
      return;
    }
  }
  standAtEnd();
}

bool TableRecordset::standAt(std::size_t position, jet::RowId row) {
  // Without positions the places of the rows that are passed need not be kept.
  if (standOnRow(row, forwardOnly_ ? std::nullopt : std::optional(position))) {
    return true;
  }
  rows_.remove(position);
  return false;
}

bool TableRecordset::standOnRow(jet::RowId row, std::optional<std::size_t> position) {
  if (const jet::RowView* found = reader_.read(row)) {
    row_ = *found;
  } else {
    row_.reset();
  }
  rowId_ = row;
  position_ = position;
  atEnd_ = beforeFirst_ = false;
  return row_.has_value();
}

void TableRecordset::standAtEnd() {
  row_.reset();
  position_.reset();
  atEnd_ = true;
  beforeFirst_ = false;
}

bool TableRecordset::eof() const {
  needOpen();
  return atEnd_ && !isAdding();
}

bool TableRecordset::bof() const {
  needOpen();
  return !isAdding() && (beforeFirst_ || (atEnd_ && !rows_.at(0)));
}

void TableRecordset::moveLast() {
  needOpen();
  saveEdit();
  const std::size_t last = std::max<std::size_t>(rows_.count(), 1) - 1;
  standOn(last);
  // Rows that were counted may turn out to be deleted.
  for (std::size_t at = last; atEnd_ && at-- > 0;) {
    standOn(at);
  }
}

void TableRecordset::moveNext() {
  needOpen();
  saveEdit();
  if (atEnd_) {
    raiseNoCurrentRecord();
  }
  if (position_) {
    // After a deletion the next row has taken the position.
    return standOn(row_ ? *position_ + 1 : *position_);
  }
  std::optional<jet::RowId> next = rows_.after(rowId_);
  while (next && !standOnRow(*next, std::nullopt)) {
    next = rows_.after(*next);
  }
  if (!next) {
    standAtEnd();
  }
}

void TableRecordset::movePrevious() {
  needOpen();
  saveEdit();
  if (beforeFirst_) {
    raiseNoCurrentRecord();
  }
  for (auto at = static_cast<std::size_t>(position()); at-- > 0;) {
    const auto row = rows_.at(at);
    if (row && standAt(at, *row)) {
      return;
    }
  }
  row_.reset();
  beforeFirst_ = true;
}

std::int64_t TableRecordset::recordCount() {
  needOpen();
  const auto added = std::count_if(pending_.begin(), pending_.end(), [](const Pending& change) {
    return change.kind == Pending::Kind::insert;
  });
  return static_cast<std::int64_t>(rows_.count()) + added;
}

std::int64_t TableRecordset::position() const {
  if (!position_) {
    position_ = atEnd_ ? rows_.count() : rows_.positionOf(rowId_);
  }
  return static_cast<std::int64_t>(*position_);
}

void TableRecordset::moveTo(std::int64_t position) {
  needOpen();
  saveEdit();
  standOn(static_cast<std::size_t>(std::max<std::int64_t>(position, 0)));
}

Value TableRecordset::value(std::size_t field) const {
  needOpen();
  needField(field);
  if (edit_) {
    return edit_->values[field];
  }
  if (!row_) {
    raiseNoCurrentRecord();
  }
  return row_->value(table_->definition().columns[field]);
}

std::vector<Value> TableRecordset::currentValues() const {
  if (!row_) {
    raiseNoCurrentRecord();
  }
  std::vector<Value> values;
  for (const jet::Column& column : table_->definition().columns) {
    row_->read(column, values.emplace_back());
  }
  return values;
}

// Searching ---------------------------------------------------------------------------------

std::optional<std::size_t> TableRecordset::indexFor(std::size_t field) const {
  for (const jet::RealIndex& index : table_->definition().realIndexes) {
    if (!index.columns.empty() && index.columns.front().column == field &&
        !table_->distrusted().contains(index.number)) {
      return index.number;
    }
  }
  return std::nullopt;
}

/// Keys of an index begin with this for rows that have the value in its first column; none for
/// text whose codes are not known.
std::optional<Bytes> TableRecordset::beginningOfKey(std::size_t index, const Value& value) const {
  const jet::IndexColumn& first = table_->definition().realIndexes[index].columns.front();
  const jet::Column& column = table_->definition().columns[first.column];
  return jet::makeSearchKey(column, jet::fitValue(table_->name(), column, value), first.ascending);
}

std::optional<jet::RowId> TableRecordset::firstInIndex(std::size_t index, const Bytes& key,
                                                       const Criterion& criterion,
                                                       std::size_t field, jet::RowId from) const {
  const jet::Column& column = table_->definition().columns[field];
  std::optional<jet::RowId> first;
  jet::Pager::ReadLock lock(table_->pager());
  for (jet::IndexCursor cursor = table_->index(index).lowerBound(key); cursor.next();) {
    const auto entry = cursor.key();
    if (entry.size() < key.size() || !std::equal(key.begin(), key.end(), entry.begin())) {
      break;
    }
    const jet::RowId id = cursor.rowId();
    if (id < from || (first && *first < id)) {
      continue;
    }
    const auto row = table_->row(id);
    if (row && criterion.isMetBy(row->value(column))) {
      first = id;
    }
  }
  return first;
}

void TableRecordset::find(std::string_view text) {
  needOpen();
  saveEdit();
  const Criterion parsed = Criterion::parse(text);
  const std::size_t field = fieldIndex(parsed.column);
  const Criterion criterion = parsed.forColumn(fields()[field]);
  const auto index = indexFor(field);
  const bool canUseIndex = index && rows_.isWholeTable() && !criterion.value.isNull() &&
                           criterion.op == Criterion::Operator::equal && !atEnd_ && row_;
  const auto key = canUseIndex ? beginningOfKey(*index, criterion.value) : std::nullopt;
  if (!key) {
    return RecordsetBase::find(text);
  }
  std::optional<jet::RowId> found;
  try {
    found = firstInIndex(*index, *key, criterion, field, rowId_);
  } catch (const Error& error) {
    if (error.number() != kCorruptFile) throw;
    table_->distrust(*index);
    return RecordsetBase::find(text);
  }
  found ? void(standOnRow(*found, std::nullopt)) : standAtEnd();
}

// Changing ----------------------------------------------------------------------------------

void TableRecordset::needUpdatable() const {
  needOpen();
  if (lock_ == LockType::readOnly) {
    throw Error(kReadOnlyStore,
                "The record set over table '" + table_->name() + "' was opened for reading only.");
  }
}

void TableRecordset::setValue(std::size_t field, Value value) {
  needUpdatable();
  needField(field);
  if (!edit_) {
    edit_ = Edit{currentValues(), false};
  }
  edit_->values[field] = std::move(value);
}

void TableRecordset::addNew() {
  needUpdatable();
  saveEdit();
  const std::vector<jet::Column>& columns = table_->definition().columns;
  if (firstOf_ != table_->sharedDefinition()) {
    firstOf_ = table_->sharedDefinition();
    firstValues_.clear();
    for (const jet::Column& column : columns) firstValues_.push_back(firstValue(column));
  }
  Edit edit{firstValues_, true};
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].autoNumber) {
      if (!numberLock_) numberLock_.emplace(table_->pager());
      edit.values[i] = table_->reserveAutoNumber();
    } else if (columns[i].autoGuid || isOfTheMoment(columns[i])) {
      edit.values[i] = firstValue(columns[i]);
    }
  }
  edit_ = std::move(edit);
}

/// What a new row holds in a column, as the column holds it where that is possible: a default that
/// does not fit fails only where it is saved.
Value TableRecordset::firstValue(const jet::Column& column) const {
  if (column.autoGuid) return jet::makeGuid();
  if (!column.defaultValue) return column.type == ColumnType::boolean ? Value(false) : Value();
  const Value value = evaluateDefault(*column.defaultValue, column.type);
  try {
    return value.isNull() ? value : jet::fitValue(table_->name(), column, value);
  } catch (const Error&) {
    return value;
  }
}

void TableRecordset::saveEdit() {
  if (edit_) {
    update();
  }
}

void TableRecordset::update() {
  needUpdatable();
  if (!edit_) {
    return;
  }
  const auto kind = edit_->isNew ? Pending::Kind::insert : Pending::Kind::update;
  if (lock_ == LockType::batchOptimistic) {
    pending_.push_back({kind, rowId_, std::move(edit_->values)});
    edit_.reset();
    return;
  }
  // What is being edited is only let go when it has been saved: after a failure the caller can
  // mend it, or give it up by cancelUpdate() or deleteRow().
  const jet::RowId saved = commit({{kind, rowId_, edit_->values}});
  edit_.reset();
  numberLock_.reset();
  standOnRow(saved, std::nullopt);
}

void TableRecordset::updateBatch() {
  needUpdatable();
  saveEdit();
  const bool anySaved = !pending_.empty();
  const jet::RowId saved = commit(pending_);
  pending_.clear();
  numberLock_.reset();
  if (anySaved && !standOnRow(saved, std::nullopt)) {
    standAtEnd();
  }
}

jet::RowId TableRecordset::commit(const std::vector<Pending>& changes) {
  jet::RowId last = rowId_;
  std::vector<jet::RowId> added;
  {
    jet::Savepoint transaction(table_->pager());
    jet::RowChanges rows(*table_);
    for (const Pending& change : changes) {
      last = apply(change, rows);
      if (change.kind == Pending::Kind::insert) added.push_back(last);
    }
    rows.finish();
    transaction.commit();
  }
  for (jet::RowId row : added) {
    rows_.add(row);
  }
  return last;
}

jet::RowId TableRecordset::apply(const Pending& change, jet::RowChanges& rows) {
  switch (change.kind) {
    case Pending::Kind::insert:
      return rows.insert(change.values);
    case Pending::Kind::update:
      rows.update(change.row, change.values);
      break;
    case Pending::Kind::erase:
      rows.erase(change.row);
      break;
  }
  return change.row;
}

void TableRecordset::cancelUpdate() {
  needOpen();
  edit_.reset();
  if (pending_.empty()) {
    numberLock_.reset();
  }
}

void TableRecordset::deleteRow() {
  needUpdatable();
  if (isAdding()) {
    return cancelUpdate();
  }
  edit_.reset();
  if (!row_) {
    raiseNoCurrentRecord();
  }
  if (lock_ == LockType::batchOptimistic) {
    pending_.push_back({Pending::Kind::erase, rowId_, {}});
  } else {
    commit({{Pending::Kind::erase, rowId_, {}}});
  }
  if (position_) {
    rows_.remove(*position_);
  } else if (!rows_.isWholeTable()) {
    position_ = rows_.positionOf(rowId_);
    rows_.remove(*position_);
  }
  row_.reset();
}

void TableRecordset::close() {
  RecordsetBase::close();
  edit_.reset();
  pending_.clear();
  numberLock_.reset();
  row_.reset();
}

}  // namespace orv::store
