// The records of a set as they are in the database.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "commands/edit/Field.h"
#include "database/Recordsets.h"

namespace orv::commands::edit {

/// Reads each record once. What is changed meanwhile is not seen.
class StoredRecords {
 public:
  StoredRecords(store::Connection& database, EditSet set)
      : database_(database), design_(designOf(set)) {}

  bool exists(std::int32_t record) { return row(record).has_value(); }
  std::vector<std::int16_t> angles(std::int32_t record);
  /// As Editor::value().
  store::Value value(std::int32_t record, const EditField& field,
                     std::optional<std::int16_t> angle);
  /// The text in a column; empty where there is none.
  std::string text(std::int32_t record, const std::string& column);
  /// The key that a column holds of a name; 0 for none.
  std::int32_t key(std::int32_t record, const std::string& column);
  /// The names of a set by their keys.
  const std::map<std::int32_t, std::string>& names(EditSet set);
  /// The name of a set that the database takes for this one; the same where there is none.
  std::string knownName(EditSet set, const std::string& name);

 private:
  using Row = std::vector<store::Value>;
  struct AngleRow {
    std::int16_t angle;
    Row values;
  };

  const std::optional<Row>& row(std::int32_t record);
  const std::vector<AngleRow>& angleRows(std::int32_t record);
  store::Value column(std::int32_t record, const std::string& name);
  [[noreturn]] void raiseMissing(std::int32_t record) const;

  store::Connection& database_;
  const SetDesign& design_;
  database::RecordsetPtr rows_;
  std::map<std::int32_t, std::optional<Row>> records_;
  std::map<std::int32_t, std::vector<AngleRow>> angleRows_;
  std::vector<store::ColumnInfo> angleColumns_;
  std::map<EditSet, std::map<std::int32_t, std::string>> names_;
  std::map<EditSet, std::map<std::string, std::string>> namesByKey_;  ///< as nameKey() tells
};

/// The same for all names that a database takes for one in a set.
std::string nameKey(store::Connection& database, EditSet set, const std::string& name);

}  // namespace orv::commands::edit
