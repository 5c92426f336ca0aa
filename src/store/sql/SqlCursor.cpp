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
  at_ += columns_.size();
  if (at_ < batch_.size()) return true;
  batch_.clear();
  at_ = 0;
  return readRows(batch_) > 0;
}

std::size_t SqlCursor::readRows(std::vector<Value>& values) {
  std::size_t rows = 0;
  // All rows of a batch may have been deleted.
  while (rows == 0 && !finished_) rows = readBatch(values);
  return rows;
}

std::size_t SqlCursor::readBatch(std::vector<Value>& values) {
  const jet::Pager::ReadLock lock(engine_->pager());
  const std::size_t before = values.size();
  if (before == 0) values.reserve(batchRows_ * columns_.size());
  std::size_t bytes = 0;
  try {
    for (std::size_t row = 0; row < batchRows_ && bytes < kBatchBytes; ++row) {
      if (!engine_->step(statement_)) {
        finished_ = true;
        break;
      }
      const std::size_t first = values.size();
      readRow(values);
      for (std::size_t i = first; i < values.size(); ++i) bytes += bytesOf(values[i]);
    }
  } catch (const Error&) {
    // Asked again, SQLite would begin with the first row.
    values.resize(before);
    finished_ = true;
    throw;
  }
  batchRows_ = std::min(batchRows_ * 4, kLargestBatch);
  return (values.size() - before) / columns_.size();
}

void SqlCursor::readRow(std::vector<Value>& values) {
  if (!reader_) {
    for (std::size_t i = 0; i < statement_.values.size(); ++i) {
      values.push_back(
          outputValue(statement_.statement.get(), static_cast<int>(i), statement_.values[i]));
    }
    return;
  }
  const jet::RowId place = statement_.rowPlace();
  const jet::RowView* row = engine_->visitedRow(place);
  if (row == nullptr) row = reader_->read(place);  // rows that were sorted
  if (row == nullptr) return;
  for (const jet::Column& column : definition_->columns) {
    row->read(column, values.emplace_back());
  }
}

}  // namespace orv::store::sql
