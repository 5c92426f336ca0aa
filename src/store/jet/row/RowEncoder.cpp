#include "store/jet/row/RowEncoder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/page/Text.h"
#include "store/jet/row/LongValue.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kUsualRowSize = 128;  // bytes; longer rows grow

template <class T>
void append(Bytes& out, T bits) {
  std::array<std::uint8_t, sizeof(T)> bytes{};
  for (std::size_t i = 0; i < sizeof(T); ++i) {
    bytes[i] = static_cast<std::uint8_t>(bits >> (8 * i));
  }
  out.insert(out.end(), bytes.begin(), bytes.end());
}

/// Stores a value of a type of plain numbers, up to eight bytes, and returns how many they are; 0
/// for other types.
std::size_t storeNumber(std::uint8_t* out, ColumnType type, const Value& value) {
  switch (type) {
    case ColumnType::byte:
      *out = static_cast<std::uint8_t>(value.toLong());
      return 1;
    case ColumnType::integer:
      store16(out, static_cast<std::uint16_t>(value.toLong()));
      return 2;
    case ColumnType::longInteger:
      store32(out, static_cast<std::uint32_t>(value.toLong()));
      return 4;
    case ColumnType::single:
      store32(out, std::bit_cast<std::uint32_t>(*value.getIf<float>()));
      return 4;
    case ColumnType::currency:
      store64(out, static_cast<std::uint64_t>(value.getIf<Currency>()->tenThousandths));
      return 8;
    case ColumnType::double_:
      store64(out, std::bit_cast<std::uint64_t>(*value.getIf<double>()));
      return 8;
    case ColumnType::dateTime:
      store64(out, std::bit_cast<std::uint64_t>(value.getIf<Date>()->days));
      return 8;
    default:
      return 0;
  }
}

/// The stored bytes of a value that is neither Null nor long nor a boolean.
Bytes encodeValue(const Column& column, const Value& value) {
  std::array<std::uint8_t, 8> number{};
  if (const std::size_t size = storeNumber(number.data(), column.type, value)) {
    return {number.begin(), number.begin() + static_cast<std::ptrdiff_t>(size)};
  }
  Bytes out;
  switch (column.type) {
    case ColumnType::text:
      out = encodeUnicodeText(*value.getIf<std::string>(), column.compressible && !column.fixed);
      break;
    case ColumnType::guid: {
      const auto& bytes = value.getIf<Guid>()->bytes;
      out.assign(bytes.begin(), bytes.end());
      break;
    }
    case ColumnType::numeric: {
      const Decimal& decimal = *value.getIf<Decimal>();
      out.push_back(decimal.negative ? 0x80 : 0);
      for (std::size_t i = 0; i < decimal.magnitude.size(); ++i) {
        out.push_back(decimal.magnitude[i / 4 * 4 + (3 - i % 4)]);
      }
      break;
    }
    default:
      out = *value.getIf<Bytes>();
      break;
  }
  if (column.fixed && column.type == ColumnType::text) {
    while (out.size() < column.length) {
      append(out, std::uint16_t{' '});
    }
  }
  return out;
}

/// Stores a value in a row, at the place that the column has there.
void storeFixed(const TableDefinition& table, const Column& column, const Value& value,
                std::uint8_t* out) {
  std::array<std::uint8_t, 8> number{};
  const std::size_t size = storeNumber(number.data(), column.type, value);
  const Bytes other = size == 0 ? encodeValue(column, value) : Bytes();
  const auto bytes =
      size == 0 ? std::span(other) : std::span<const std::uint8_t>(number).first(size);
  if (bytes.size() > column.length) {
    raiseDamaged(table.page, "column '" + column.name + "' of table '" + table.name +
                                 "' has less room than its type takes");
  }
  std::copy(bytes.begin(), bytes.end(), out);
}

Bytes longValueBytes(const Column& column, const Value& value) {
  constexpr std::size_t kMostCompressed = 1024;  // of the text in UTF-16
  if (const std::string* text = value.getIf<std::string>()) {
    const bool isShort = utf16FromUtf8(*text).size() * 2 <= kMostCompressed;
    return encodeUnicodeText(*text, column.compressible && isShort);
  }
  return *value.getIf<Bytes>();
}

/// The definition of a long value in the new row.
Bytes encodeLongValue(Pager& pager, const Column& column, const Value& value,
                      const RowView* before) {
  if (before != nullptr && !before->isNull(column)) {
    const auto old = before->bytes(column);
    if (before->value(column) == value) {
      return {old.begin(), old.end()};
    }
    eraseLongValue(pager, column, old, 0);
  }
  return value.isNull() ? Bytes() : writeLongValue(pager, column, longValueBytes(column, value));
}

/// A definition's places for a column are not trusted: writing would follow them anywhere.
void needPlace(const TableDefinition& table, const Column& column) {
  const bool variable = !column.fixed && column.type != ColumnType::boolean;
  if (column.number >= table.maxColumns ||
      (variable && column.variableIndex >= table.variableColumns)) {
    raiseDamaged(table.page, "rows of table '" + table.name + "' have no place for column '" +
                                 column.name + "' of its definition");
  }
}

bool isPresent(const Column& column, const Value& value) {
  return column.type == ColumnType::boolean ? value.toBoolean() : !value.isNull();
}

/// Where the fixed columns end, which begin behind the number of columns.
std::size_t endOfFixed(const TableDefinition& table) {
  std::size_t end = 2;
  for (const Column& column : table.columns) {
    needPlace(table, column);
    if (!column.fixed || column.type == ColumnType::boolean) continue;
    end = std::max(end, 2 + std::size_t{column.fixedOffset} + column.length);
  }
  return end;
}

/// Appends the variable columns and the table of their places.
void appendVariable(Bytes& row, Pager& pager, const TableDefinition& table,
                    std::span<const Value> values, const RowView* before) {
  std::vector<Bytes> variable(table.variableColumns);
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const Column& column = table.columns[i];
    if (column.fixed || column.type == ColumnType::boolean) continue;
    Bytes& bytes = variable[column.variableIndex];
    if (column.isLongValue()) {
      bytes = encodeLongValue(pager, column, values[i], before);
    } else if (!values[i].isNull()) {
      bytes = encodeValue(column, values[i]);
    }
  }
  std::vector<std::size_t> offsets;
  for (const Bytes& stored : variable) {
    offsets.push_back(row.size());
    row.insert(row.end(), stored.begin(), stored.end());
  }
  offsets.push_back(row.size());
  for (std::size_t i = offsets.size(); i-- > 0;) {
    append(row, static_cast<std::uint16_t>(offsets[i]));
  }
  append(row, table.variableColumns);
}

}  // namespace

Bytes encodeRow(Pager& pager, const TableDefinition& table, std::span<const Value> values,
                const RowView* before) {
  Bytes row;
  row.reserve(kUsualRowSize);
  row.resize(endOfFixed(table));
  store16(row.data(), table.maxColumns);
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const Column& column = table.columns[i];
    if (!column.fixed || column.type == ColumnType::boolean || values[i].isNull()) continue;
    storeFixed(table, column, values[i], row.data() + 2 + column.fixedOffset);
  }
  if (table.variableColumns > 0) appendVariable(row, pager, table, values, before);
  const std::size_t mask = row.size();
  row.resize(mask + (table.maxColumns + std::size_t{7}) / 8);
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const Column& column = table.columns[i];
    if (!isPresent(column, values[i])) continue;
    row[mask + column.number / 8] |= static_cast<std::uint8_t>(1 << (column.number % 8));
  }
  if (row.size() > pager.format().row.maxSize) {
    throw Error(kOverflow, "A row of table '" + table.name + "' would take " +
                               std::to_string(row.size()) + " bytes; at most " +
                               std::to_string(pager.format().row.maxSize) +
                               " are possible. Shorten its texts.");
  }
  return row;
}

}  // namespace orv::store::jet
