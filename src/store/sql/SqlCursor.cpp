#include "store/sql/SqlCursor.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/sql/SqlEngine.h"
#include "store/sql/run/OutputValue.h"

namespace orv::store::sql {
namespace {

constexpr std::size_t kLargestBatch = 1024;     // rows
constexpr std::size_t kBatchBytes = 1'000'000;  // after which a batch ends, for long values

std::size_t bytesOf(const Value& value) {
  if (const auto* text = value.getIf<std::string>()) {
    return text->size();
  }
  const auto* bytes = value.getIf<Bytes>();
  return bytes == nullptr ? 0 : bytes->size();
}

}  // namespace

SqlCursor::SqlCursor(std::shared_ptr<SqlEngine> engine, PreparedStatement statement)
    : engine_(std::move(engine)), statement_(std::move(statement)) {
  for (const TypedColumn& column : statement_.values) {
    columns_.push_back(column.info);
  }
  if (!statement_.rowsOf) return;
  definition_ = statement_.rowsOf->sharedDefinition();
  for (const jet::Column& column : definition_->columns) {
    columns_.push_back(jet::describe(column));
  }
  reader_.emplace(statement_.rowsOf);
}

SqlCursor::~SqlCursor() {
  engine_->keep(std::move(statement_));
}

bool SqlCursor::step() {
  if (started_ && at_ < batch_.size()) {
    at_ += columns_.size();
  }
  started_ = true;
  while (at_ >= batch_.size() && !finished_) {  // all rows of a batch may have been deleted
    readBatch();
  }
  return at_ < batch_.size();
}

std::size_t SqlCursor::takeRows(std::vector<Value>& values) {
  const auto first = batch_.begin() + static_cast<std::ptrdiff_t>(at_);
  const auto taken = static_cast<std::size_t>(batch_.end() - first);
  values.insert(values.end(), std::make_move_iterator(first),
                std::make_move_iterator(batch_.end()));
  batch_.clear();
  at_ = 0;
  return taken / columns_.size();
}

void SqlCursor::readBatch() {
  const jet::Pager::ReadLock lock(engine_->pager());
  batch_.clear();
  batch_.reserve(batchRows_ * columns_.size());
  at_ = 0;
  std::size_t bytes = 0;
  try {
    for (std::size_t row = 0; row < batchRows_ && bytes < kBatchBytes; ++row) {
      if (!engine_->step(statement_)) {
        finished_ = true;
        break;
      }
      const std::size_t before = batch_.size();
      readRow();
      for (std::size_t i = before; i < batch_.size(); ++i) bytes += bytesOf(batch_[i]);
    }
  } catch (const Error&) {
    // Asked again, SQLite would begin with the first row.
    batch_.clear();
    finished_ = true;
    throw;
  }
  batchRows_ = std::min(batchRows_ * 4, kLargestBatch);
}

void SqlCursor::readRow() {
  if (!reader_) {
    for (std::size_t i = 0; i < statement_.values.size(); ++i) {
      batch_.push_back(
          outputValue(statement_.statement.get(), static_cast<int>(i), statement_.values[i]));
    }
    return;
  }
  const jet::RowView* row = reader_->read(statement_.rowPlace());
  if (row == nullptr) return;
  for (const jet::Column& column : definition_->columns) {
    batch_.push_back(row->value(column));
  }
}

}  // namespace orv::store::sql
