#include "store/SqlRecordset.h"

#include "errors/Error.h"
#include "store/StoreError.h"

namespace orv::store {
namespace {

[[noreturn]] void raiseReadOnly() {
  throw Error(kReadOnlyStore,
              "The rows of this statement cannot be changed: only those of a whole table, or of "
              "a SELECT * over one table opened for changes, can.");
}

}  // namespace

SqlRecordset::SqlRecordset(std::unique_ptr<sql::SqlCursor> cursor, CursorType type)
    : RecordsetBase(cursor->columns()),
      cursor_(std::move(cursor)),
      keepsRows_(type != CursorType::forwardOnly) {
  standOn(0);
}

bool SqlRecordset::readTo(std::size_t position) {
  while (rowsRead_ <= position && cursor_ != nullptr) {
    const std::size_t rows = keepsRows_ ? cursor_->readRows(kept_) : cursor_->step() ? 1 : 0;
    rowsRead_ += rows;
    if (rows == 0) cursor_.reset();
  }
  return position < rowsRead_;
}

void SqlRecordset::standOn(std::size_t position) {
  const bool isPassed = position < rowsRead_ && (position + 1 < rowsRead_ || cursor_ == nullptr);
  if (!keepsRows_ && isPassed) {
    throw Error(kNotSupported, "A forward-only record set cannot go back.");
  }
  atEnd_ = true;  // should reading fail
  atEnd_ = !readTo(position);
  position_ = atEnd_ ? rowsRead_ : position;
  beforeFirst_ = false;
}

bool SqlRecordset::eof() const {
  needOpen();
  return atEnd_;
}

bool SqlRecordset::bof() const {
  needOpen();
  return beforeFirst_ || (atEnd_ && position_ == 0);
}

void SqlRecordset::moveFirst() {
  needOpen();
  standOn(0);
}

void SqlRecordset::moveLast() {
  needOpen();
  const auto count = static_cast<std::size_t>(recordCount());
  standOn(count == 0 ? 0 : count - 1);
}

void SqlRecordset::moveNext() {
  needOpen();
  if (atEnd_) {
    raiseNoCurrentRecord();
  }
  standOn(beforeFirst_ ? 0 : position_ + 1);
}

void SqlRecordset::movePrevious() {
  needOpen();
  if (beforeFirst_) {
    raiseNoCurrentRecord();
  }
  if (position_ == 0) {
    beforeFirst_ = true;
    return;
  }
  standOn(position_ - 1);
}

std::int64_t SqlRecordset::recordCount() {
  needOpen();
  if (keepsRows_) {
    readTo(SIZE_MAX - 1);
  }
  return static_cast<std::int64_t>(rowsRead_);
}

void SqlRecordset::moveTo(std::int64_t position) {
  needOpen();
  standOn(static_cast<std::size_t>(std::max<std::int64_t>(position, 0)));
}

Value SqlRecordset::value(std::size_t field) const {
  needOpen();
  needField(field);
  if (atEnd_ || beforeFirst_) {
    raiseNoCurrentRecord();
  }
  return keepsRows_ ? kept_[position_ * fields().size() + field] : cursor_->value(field);
}

void SqlRecordset::setValue(std::size_t, Value) {
  raiseReadOnly();
}
void SqlRecordset::addNew() {
  raiseReadOnly();
}
void SqlRecordset::deleteRow() {
  raiseReadOnly();
}

void SqlRecordset::close() {
  RecordsetBase::close();
  cursor_.reset();
  kept_.clear();
}

}  // namespace orv::store
