// The ways in which the database layer opens record sets.
#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "model/Text.h"
#include "store/Connection.h"

namespace orv::database {

using RecordsetPtr = std::unique_ptr<store::Recordset>;

/// A whole table, to be read and searched.
inline RecordsetPtr openTable(store::Connection& dc, const std::string& table) {
  return dc.openRecordset(table, store::CursorType::static_, store::LockType::readOnly,
                          store::SourceKind::table);
}

/// A whole table, to which single rows are added.
inline RecordsetPtr openUpdatable(store::Connection& dc, const std::string& table) {
  return dc.openRecordset(table, store::CursorType::dynamic, store::LockType::optimistic,
                          store::SourceKind::table);
}

/// A table to which the detail rows of one record are added in one commit.
inline RecordsetPtr openBatch(store::Connection& dc, const std::string& table) {
  return dc.openRecordset(table, store::CursorType::static_, store::LockType::batchOptimistic,
                          store::SourceKind::table);
}

/// A whole table, of which one row is changed or deleted.
inline RecordsetPtr openKeyset(store::Connection& dc, const std::string& table) {
  return dc.openRecordset(table, store::CursorType::keyset, store::LockType::optimistic,
                          store::SourceKind::table);
}

/// The rows of a statement, which are changed one by one.
inline RecordsetPtr openForChange(store::Connection& dc, const std::string& statement) {
  return dc.openRecordset(statement, store::CursorType::keyset, store::LockType::optimistic,
                          store::SourceKind::sql);
}

/// The rows of a statement, read once in order.
inline RecordsetPtr openSql(store::Connection& dc, const std::string& statement) {
  return dc.openRecordset(statement, store::CursorType::forwardOnly, store::LockType::readOnly,
                          store::SourceKind::sql);
}

/// The rows of a statement, counted.
inline RecordsetPtr openCountedSql(store::Connection& dc, const std::string& statement) {
  return dc.openRecordset(statement, store::CursorType::static_, store::LockType::readOnly,
                          store::SourceKind::sql);
}

/// The position of a field; none where the record set has no such field.
inline std::optional<std::size_t> findField(const store::Recordset& rows, const char* name) {
  const auto& fields = rows.fields();
  const auto found = std::find_if(fields.begin(), fields.end(), [&](const auto& field) {
    return equalIgnoringCase(field.name, name);
  });
  if (found == fields.end()) return std::nullopt;
  return static_cast<std::size_t>(found - fields.begin());
}

/// `text` between apostrophes, as it stands: a name that holds one makes the statement or
/// criterion malformed, which the store reports.
inline std::string quoted(const std::string& text) {
  return "'" + text + "'";
}

}  // namespace orv::database
