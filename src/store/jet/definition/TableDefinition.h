// The definition of a table as its definition pages hold it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Schema.h"
#include "store/Value.h"
#include "store/jet/page/Format.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

class Pager;

/// Whether a column can be of the type. Access's own tables have columns of types within this range
/// that no other table has.
constexpr bool isColumnType(ColumnType type) {
  return type >= ColumnType::boolean && type <= ColumnType::extendedDate;
}

struct Column {
  std::string name;
  ColumnType type = ColumnType::text;
  std::uint16_t number = 0;         ///< bit in the row's null mask; deleted columns keep theirs
  std::uint16_t variableIndex = 0;  ///< entry in the row's table of variable offsets
  std::uint16_t fixedOffset = 0;    ///< from the row's first fixed byte
  std::uint16_t length = 0;         ///< bytes; 0 for memo and OLE
  bool fixed = false;
  bool autoNumber = false;
  bool autoGuid = false;
  bool hyperlink = false;
  bool calculated = false;    ///< its values have a form of their own: decodeCalculated()
  bool securityId = false;    ///< binary: names a user, in system tables
  bool compressible = false;  ///< text may be stored compressed
  std::uint8_t precision = 0;
  std::uint8_t scale = 0;
  SortOrder sortOrder{};
  // Long values: maps of the pages that hold this column's chains.
  std::optional<RowId> longValuePages{};
  std::optional<RowId> longValueFreePages{};
  // From the table's properties.
  bool required = false;
  bool allowZeroLength = true;
  std::optional<std::string> defaultValue{};  ///< an expression

  bool isLongValue() const { return type == ColumnType::memo || type == ColumnType::ole; }

  bool operator==(const Column&) const = default;
};

/// What users of the store are told of a column.
ColumnInfo describe(const Column& column);

struct IndexColumn {
  std::size_t column = 0;  ///< position in TableDefinition::columns
  bool ascending = true;

  bool operator==(const IndexColumn&) const = default;
};

/// A B-tree of the table.
struct RealIndex {
  std::size_t number = 0;  ///< position among the table's real indexes
  std::vector<IndexColumn> columns;
  RowId ownedPages{};  ///< usage map of the tree's pages
  PageNumber root = 0;
  bool unique = false;
  bool ignoreNulls = false;
  bool required = false;

  bool operator==(const RealIndex&) const = default;
};

/// A named index: a real one with its use. Several may share one tree.
struct LogicalIndex {
  enum class Kind : std::uint8_t { plain = 0, primary = 1, foreign = 2 };
  std::string name;
  std::uint32_t number = 0;
  std::size_t realIndex = 0;
  Kind kind = Kind::plain;
  // For an enforced relation: the other table's definition page and its index's number.
  std::uint8_t relationType = 0;
  std::int32_t relationIndex = -1;
  PageNumber relationTable = 0;
  bool cascadeUpdates = false;
  bool cascadeDeletes = false;

  bool operator==(const LogicalIndex&) const = default;
};

/// Rows that room is made for before they are read: a file can say that a table has any number.
inline constexpr std::uint32_t kMostRowsExpected = 1'000'000;

struct TableDefinition {
  std::string name;
  PageNumber page = 0;                ///< first page of the definition
  std::vector<PageNumber> morePages;  ///< the others, in order
  bool systemTable = false;
  std::uint16_t maxColumns = 0;  ///< columns that a new row has, deleted ones included
  std::uint16_t variableColumns = 0;
  // Which rows have a part for variable columns: those written when the table had such a column,
  // which their own number of columns tells.
  std::uint16_t variableAbove = 0;    ///< rows of more columns have it
  std::uint16_t variablePerhaps = 0;  ///< rows of as many or fewer have none; between the two a
                                      ///< deleted column may have been variable
  RowId ownedPages{};
  RowId freePages{};
  std::vector<Column> columns;  ///< in the order of their numbers
  std::vector<RealIndex> realIndexes;
  std::vector<LogicalIndex> logicalIndexes;

  /// Position of a column, its name compared without regard to case.
  std::optional<std::size_t> findColumn(std::string_view column) const;

  bool operator==(const TableDefinition&) const = default;
};

/// Reads the definition that begins on `page`. Raises kCorruptFile.
std::shared_ptr<TableDefinition> readTableDefinition(Pager& pager, PageNumber page,
                                                     const std::string& name);
/// Reads the columns of a definition of which `bytes` (see DefinitionPages.h) are there, and does
/// without its indexes and the maps of its long values. Raises kCorruptFile.
std::shared_ptr<TableDefinition> readTableColumns(const Pager& pager, const Bytes& bytes,
                                                  PageNumber page, const std::string& name);

}  // namespace orv::store::jet
