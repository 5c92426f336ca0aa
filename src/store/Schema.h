// What a database holds: tables, columns, indexes, saved queries; as found, and as asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orv::store {

/// Column types, with the codes of the file format.
enum class ColumnType : std::uint8_t {
  boolean = 0x01,
  byte = 0x02,
  integer = 0x03,      ///< 16 bits, signed
  longInteger = 0x04,  ///< 32 bits, signed
  currency = 0x05,
  single = 0x06,
  double_ = 0x07,
  dateTime = 0x08,
  binary = 0x09,
  text = 0x0a,
  ole = 0x0b,   ///< long binary
  memo = 0x0c,  ///< long text
  guid = 0x0f,
  numeric = 0x10,
  complex = 0x12,       ///< attachments and multi-valued fields of `.accdb` files: their key
  bigInteger = 0x13,    ///< 64 bits, `.accdb` files only
  extendedDate = 0x14,  ///< `.accdb` files only; users of the store are told of a dateTime
};

/// A column, as found in a table or a record set, or as wanted in a new table.
struct ColumnInfo {
  std::string name;
  ColumnType type = ColumnType::text;
  /// Largest number of characters (text) or bytes (binary); 0 for other types.
  std::size_t size = 0;
  bool autoNumber = false;
  bool required = false;
  bool allowZeroLength = true;
  std::uint8_t precision = 0;  ///< numeric: number of digits
  std::uint8_t scale = 0;      ///< numeric: digits after the point
  /// The default as the file has it: an expression such as `0` or `"Unknown"`.
  std::optional<std::string> defaultValue{};
};

struct IndexColumnInfo {
  std::string name;
  bool ascending = true;
};

struct IndexInfo {
  std::string name;
  std::vector<IndexColumnInfo> columns;
  bool primary = false;
  bool unique = false;
  bool ignoreNulls = false;  ///< rows whose key is all Null have no entry
  bool required = false;     ///< Null in a key column is refused
  bool ofRelation = false;   ///< kept for a relation, under a name that no other index may have
};

struct TableInfo {
  std::string name;
  std::vector<ColumnInfo> columns;
  std::vector<IndexInfo> indexes{};
  std::int64_t rowCount = 0;  ///< as the file says; other programs do not always keep it
};

enum class JoinKind { inner, left, right };

/// A SELECT query to be saved, clause by clause. Expressions are Access SQL.
struct QueryDesign {
  struct Join {
    JoinKind kind = JoinKind::inner;
    std::string leftTable;
    std::string rightTable;
    std::string condition;
  };
  struct Output {
    std::string expression;
    std::string alias{};  ///< empty for none
  };
  struct OrderTerm {
    std::string expression;
    bool descending = false;
  };
  std::string name;
  std::vector<Output> outputs;
  std::vector<std::string> tables;
  std::vector<Join> joins{};
  std::string where{};
  std::vector<OrderTerm> orderBy{};
};

/// A table whose rows are in another database.
struct LinkedTableInfo {
  std::string name;
  std::string database;  ///< path of the other database as the file has it; empty for ODBC sources
  std::string foreignName;  ///< the table's name there
};

/// A relation between two tables, as the catalogue lists it.
struct RelationInfo {
  std::string name;
  std::string table;            ///< the referring table
  std::string referencedTable;  ///< the table referred to
  std::vector<std::string> columns;
  std::vector<std::string> referencedColumns;
  bool enforced = false;
};

}  // namespace orv::store
