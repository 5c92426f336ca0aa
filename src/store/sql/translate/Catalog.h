// What names in a statement can stand for.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Schema.h"

namespace orv::store::sql {

/// A table as SQLite knows it: its name there, and its columns, which are named c0, c1, ... there
/// since Jet allows names that SQLite cannot tell apart.
struct TableBinding {
  std::string sqlName;
  std::vector<ColumnInfo> columns;
};

/// Finds tables and saved queries by name, without regard to case.
class Catalog {
 public:
  virtual ~Catalog() = default;
  virtual std::optional<TableBinding> table(const std::string& name) = 0;
  /// The Access SQL text of a saved query.
  virtual std::optional<std::string> queryText(const std::string& name) = 0;
  /// Whether there is a saved query of this name.
  virtual bool isQuery(const std::string& name) = 0;
};

/// Names of the collations that are registered with SQLite: text in the order of the store's
/// indexes, and fixed-point numbers, which pass through SQLite as text so that no digit is lost.
inline constexpr const char* kTextCollation = "JET";
inline constexpr const char* kDecimalCollation = "JETDECIMAL";

inline bool isTextType(ColumnType type) {
  return type == ColumnType::text || type == ColumnType::memo || type == ColumnType::guid;
}
inline bool isDecimalType(ColumnType type) {
  return type == ColumnType::numeric || type == ColumnType::currency;
}
inline bool isWholeType(ColumnType type) {
  return type == ColumnType::byte || type == ColumnType::integer ||
         type == ColumnType::longInteger || type == ColumnType::bigInteger;
}
inline bool isNumberType(ColumnType type) {
  return isWholeType(type) || isDecimalType(type) || type == ColumnType::single ||
         type == ColumnType::double_;
}

}  // namespace orv::store::sql
