#include "store/jet/definition/TableDesign.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kMaxTextSize = 255;    // characters
constexpr std::size_t kMaxBinarySize = 510;  // bytes
constexpr std::uint8_t kMaxPrecision = 28;
constexpr std::uint8_t kDefaultPrecision = 18;

[[noreturn]] void refuse(const std::string& what) {
  throw Error(kInvalidDesign, what);
}

std::string columnOf(const std::string& table, const std::string& column) {
  return fmt::format("Column '{}' of table '{}'", column, table);
}

/// Bytes of a value of a type whose values all have the same size; 0 for other types.
std::uint16_t fixedSize(ColumnType type) {
  switch (type) {
    case ColumnType::boolean:
    case ColumnType::byte:
      return 1;
    case ColumnType::integer:
      return 2;
    case ColumnType::longInteger:
    case ColumnType::single:
      return 4;
    case ColumnType::currency:
    case ColumnType::double_:
    case ColumnType::dateTime:
      return 8;
    case ColumnType::guid:
      return 16;
    case ColumnType::numeric:
      return 17;
    default:
      return 0;
  }
}

std::uint16_t lengthOf(const std::string& table, const ColumnInfo& design) {
  switch (design.type) {
    case ColumnType::text: {
      const std::size_t size = design.size == 0 ? kMaxTextSize : design.size;
      if (size > kMaxTextSize) {
        refuse(fmt::format("{} is to hold {} characters; text holds at most {}. Make it a memo.",
                           columnOf(table, design.name), size, kMaxTextSize));
      }
      return static_cast<std::uint16_t>(2 * size);
    }
    case ColumnType::binary:
      if (design.size == 0 || design.size > kMaxBinarySize) {
        refuse(
            fmt::format("{} is to hold {} bytes; binary columns hold 1 to {}. Make it an OLE "
                        "column.",
                        columnOf(table, design.name), design.size, kMaxBinarySize));
      }
      return static_cast<std::uint16_t>(design.size);
    case ColumnType::memo:
    case ColumnType::ole:
      return 0;
    default:
      if (fixedSize(design.type) == 0) {
        throw Error(kNotSupported,
                    columnOf(table, design.name) + " is of a type that Jet 4 files do not have.");
      }
      return fixedSize(design.type);
  }
}

Column defineColumn(const TableDefinition& table, const ColumnInfo& design) {
  Column column;
  column.name = design.name;
  column.type = design.type;
  column.length = lengthOf(table.name, design);
  column.fixed = fixedSize(design.type) != 0;
  column.autoNumber = design.autoNumber;
  column.compressible = design.type == ColumnType::text || design.type == ColumnType::memo;
  column.required = design.required;
  column.allowZeroLength = design.allowZeroLength;
  column.defaultValue = design.defaultValue;
  if (design.autoNumber && design.type != ColumnType::longInteger) {
    refuse(columnOf(table.name, design.name) +
           " is to get automatic numbers, but is no long integer.");
  }
  if (design.type == ColumnType::numeric) {
    column.precision = design.precision == 0 ? kDefaultPrecision : design.precision;
    column.scale = design.scale;
    if (column.precision > kMaxPrecision || column.scale > column.precision) {
      refuse(fmt::format(
          "{} is to have {} digits, {} of them after the point; at most {} are "
          "possible.",
          columnOf(table.name, design.name), column.precision, column.scale, kMaxPrecision));
    }
  }
  return column;
}

/// Numbers the columns and gives each its place in a row.
void placeColumns(TableDefinition& table) {
  std::size_t fixedEnd = 0;
  table.maxColumns = static_cast<std::uint16_t>(table.columns.size());
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    Column& column = table.columns[i];
    column.number = static_cast<std::uint16_t>(i);
    column.variableIndex = table.variableColumns;
    if (!column.fixed) {
      ++table.variableColumns;
    } else if (column.type != ColumnType::boolean) {  // those are bits of the null mask
      column.fixedOffset = static_cast<std::uint16_t>(fixedEnd);
      fixedEnd += column.length;
    }
  }
  const std::size_t variable =
      table.variableColumns == 0 ? 0 : 2 * (table.variableColumns + std::size_t{2});
  const std::size_t smallestRow = 2 + fixedEnd + variable + (table.columns.size() + 7) / 8;
  if (smallestRow > kJet4.row.maxSize) {
    refuse(
        fmt::format("A row of table '{}' would take at least {} bytes; at most {} are possible. "
                    "Part the columns among two tables.",
                    table.name, smallestRow, kJet4.row.maxSize));
  }
}

void defineColumns(TableDefinition& table, const TableInfo& design) {
  if (design.columns.empty() || design.columns.size() > kMaxTableColumns) {
    refuse(fmt::format("Table '{}' is to have {} columns; 1 to {} are possible.", design.name,
                       design.columns.size(), kMaxTableColumns));
  }
  std::set<std::string> names;
  for (const ColumnInfo& column : design.columns) {
    checkName("a column", column.name);
    if (!names.insert(foldName(column.name)).second) {
      refuse(
          fmt::format("Table '{}' is to have two columns named '{}'.", design.name, column.name));
    }
    if (column.autoNumber && std::any_of(table.columns.begin(), table.columns.end(),
                                         [](const Column& c) { return c.autoNumber; })) {
      refuse(fmt::format("Table '{}' is to have two columns with automatic numbers.", design.name));
    }
    table.columns.push_back(defineColumn(table, column));
  }
  placeColumns(table);
}

IndexColumn findKeyColumn(const TableDefinition& table, const IndexInfo& design,
                          const IndexColumnInfo& key) {
  const auto column = table.findColumn(key.name);
  if (!column) {
    refuse(fmt::format("Index '{}' is to be over column '{}', but table '{}' has no such column.",
                       design.name, key.name, table.name));
  }
  if (table.columns[*column].type == ColumnType::ole) {
    refuse(columnOf(table.name, key.name) + " cannot be in an index: it is an OLE column.");
  }
  return {*column, key.ascending};
}

}  // namespace

void checkName(std::string_view what, const std::string& name) {
  const std::u16string units = utf16FromUtf8(name);
  const auto isForbidden = [](char16_t u) {
    return u < u' ' || std::u16string_view(u".!`[]").find(u) != std::u16string_view::npos;
  };
  if (units.empty() || units.size() > kMaxNameLength || units.front() == u' ' ||
      std::any_of(units.begin(), units.end(), isForbidden)) {
    refuse(
        fmt::format("'{}' cannot be the name of {}: names have 1 to {} characters, do not "
                    "begin with a blank, and have none of . ! ` [ ] in them.",
                    name, what, kMaxNameLength));
  }
}

TableDefinition defineTable(const TableInfo& design) {
  checkName("a table", design.name);
  TableDefinition table;
  table.name = design.name;
  defineColumns(table, design);
  for (const IndexInfo& index : design.indexes) {
    defineIndex(table, index);
  }
  return table;
}

void defineIndex(TableDefinition& table, const IndexInfo& design) {
  checkName("an index", design.name);
  if (table.realIndexes.size() >= kMaxTableIndexes) {
    refuse(fmt::format("Table '{}' has {} indexes already, and can have no more.", table.name,
                       table.realIndexes.size()));
  }
  if (design.columns.empty() || design.columns.size() > kMaxIndexColumns) {
    refuse(fmt::format("Index '{}' of table '{}' is to be over {} columns; 1 to {} are possible.",
                       design.name, table.name, design.columns.size(), kMaxIndexColumns));
  }
  RealIndex real;
  LogicalIndex logical;
  for (const LogicalIndex& other : table.logicalIndexes) {
    if (sameName(other.name, design.name)) {
      throw Error(kObjectExists,
                  fmt::format("Table '{}' has an index '{}' already.", table.name, design.name));
    }
    if (design.primary && other.kind == LogicalIndex::Kind::primary) {
      throw Error(kObjectExists, fmt::format("Table '{}' has a primary key already: index '{}'.",
                                             table.name, other.name));
    }
    logical.number = std::max(logical.number, other.number + 1);
  }
  for (const IndexColumnInfo& key : design.columns) {
    const IndexColumn found = findKeyColumn(table, design, key);
    if (std::any_of(real.columns.begin(), real.columns.end(),
                    [&](const IndexColumn& column) { return column.column == found.column; })) {
      refuse(fmt::format("Index '{}' of table '{}' names column '{}' twice.", design.name,
                         table.name, key.name));
    }
    real.columns.push_back(found);
  }
  real.number = table.realIndexes.size();
  real.unique = design.unique || design.primary;
  real.required = design.required || design.primary;
  real.ignoreNulls = design.ignoreNulls;
  logical.name = design.name;
  logical.realIndex = real.number;
  logical.kind = design.primary ? LogicalIndex::Kind::primary : LogicalIndex::Kind::plain;
  table.realIndexes.push_back(std::move(real));
  table.logicalIndexes.push_back(std::move(logical));
}

}  // namespace orv::store::jet
