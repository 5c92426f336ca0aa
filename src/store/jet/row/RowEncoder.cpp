#include "store/jet/row/RowEncoder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/page/Text.h"
#include "store/jet/row/LongValue.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kUsualRowSize = 128;  // bytes; longer rows grow

[[noreturn]] void raiseFor(const std::string& table, const Column& column, std::int32_t number,
                           const std::string& what) {
  throw Error(number, "Column '" + column.name + "' of table '" + table + "' " + what + ".");
}

std::int32_t fitWhole(const std::string& table, const Column& column, const Value& value,
                      double lowest, double highest) {
  const double number = std::nearbyint(value.toDouble());
  if (!(number >= lowest && number <= highest)) {
    raiseFor(table, column, kOverflow, "cannot hold the number " + value.toText());
  }
  return static_cast<std::int32_t>(number);
}

float fitSingle(const std::string& table, const Column& column, const Value& value) {
  if (const float* single = value.getIf<float>()) {
    return *single;
  }
  const double number = value.toDouble();
  if (std::isfinite(number) && std::abs(number) > std::numeric_limits<float>::max()) {
    raiseFor(table, column, kOverflow, "cannot hold the number " + value.toText());
  }
  return static_cast<float>(number);
}

Currency fitCurrency(const std::string& table, const Column& column, const Value& value) {
  if (const Currency* currency = value.getIf<Currency>()) {
    return *currency;
  }
  const double amount = std::nearbyint(value.toDouble() * 10000.0);
  if (!(std::abs(amount) < 0x1p63)) {
    raiseFor(table, column, kOverflow, "cannot hold the amount " + value.toText());
  }
  return {static_cast<std::int64_t>(amount)};
}

std::string fitText(const std::string& table, const Column& column, const Value& value) {
  std::string text = value.toText();
  if (text.empty() && !column.allowZeroLength) {
    raiseFor(table, column, kDuplicateKey, "does not take empty text");
  }
  if (column.type == ColumnType::text && utf16FromUtf8(text).size() * 2 > column.length) {
    raiseFor(table, column, kOverflow,
             "holds at most " + std::to_string(column.length / 2) + " characters, and the text '" +
                 text.substr(0, 60) + (text.size() > 60 ? "…' is longer" : "' is longer"));
  }
  return text;
}

Bytes fitBytes(const std::string& table, const Column& column, const Value& value) {
  const Bytes* bytes = value.getIf<Bytes>();
  if (bytes == nullptr) {
    raiseFor(table, column, kTypeMismatch, "takes bytes only");
  }
  if (column.type == ColumnType::binary && bytes->size() > column.length) {
    raiseFor(table, column, kOverflow, "holds at most " + std::to_string(column.length) + " bytes");
  }
  return *bytes;
}

template <class T>
void append(Bytes& out, T bits) {
  std::array<std::uint8_t, sizeof(T)> bytes{};
  for (std::size_t i = 0; i < sizeof(T); ++i) {
    bytes[i] = static_cast<std::uint8_t>(bits >> (8 * i));
  }
  out.insert(out.end(), bytes.begin(), bytes.end());
}

/// Makes `out` the stored bytes of a value that is neither Null nor long nor a boolean; it keeps
/// its capacity.
void encodeValue(Bytes& out, const Column& column, const Value& value) {
  out.clear();
  switch (column.type) {
    case ColumnType::byte:
      append(out, static_cast<std::uint8_t>(value.toLong()));
      break;
    case ColumnType::integer:
      append(out, static_cast<std::uint16_t>(value.toLong()));
      break;
    case ColumnType::longInteger:
      append(out, static_cast<std::uint32_t>(value.toLong()));
      break;
    case ColumnType::currency:
      append(out, static_cast<std::uint64_t>(value.getIf<Currency>()->tenThousandths));
      break;
    case ColumnType::single:
      append(out, std::bit_cast<std::uint32_t>(*value.getIf<float>()));
      break;
    case ColumnType::double_:
      append(out, std::bit_cast<std::uint64_t>(*value.getIf<double>()));
      break;
    case ColumnType::dateTime:
      append(out, std::bit_cast<std::uint64_t>(value.getIf<Date>()->days));
      break;
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

}  // namespace

Value fitValue(const std::string& table, const Column& column, const Value& value) {
  if (column.type == ColumnType::boolean) {
    return !value.isNull() && value.toBoolean();
  }
  if (value.isNull()) {
    if (column.required) {
      raiseFor(table, column, kDuplicateKey, "must have a value");
    }
    return value;
  }
  try {
    switch (column.type) {
      case ColumnType::byte:
        return fitWhole(table, column, value, 0, 255);
      case ColumnType::integer:
        return fitWhole(table, column, value, -32768, 32767);
      case ColumnType::longInteger:
        return fitWhole(table, column, value, std::numeric_limits<std::int32_t>::min(),
                        std::numeric_limits<std::int32_t>::max());
      case ColumnType::single:
        return fitSingle(table, column, value);
      case ColumnType::double_:
        return value.toDouble();
      case ColumnType::dateTime:
        return Date{value.toDouble()};
      case ColumnType::currency:
        return fitCurrency(table, column, value);
      case ColumnType::text:
      case ColumnType::memo:
        return fitText(table, column, value);
      case ColumnType::binary:
      case ColumnType::ole:
        return fitBytes(table, column, value);
      case ColumnType::numeric:
        return Decimal::fromText(value.toText(), column.precision, column.scale);
      case ColumnType::guid:
        if (value.getIf<Guid>() != nullptr) {
          return value;
        }
        break;
      default:
        break;
    }
  } catch (const Error& error) {
    if (error.description().find("Column '") == 0) {
      throw;
    }
    raiseFor(table, column, error.number(), "cannot hold '" + value.toText() + "'");
  }
  raiseFor(table, column, kNotSupported, "is of a type that cannot be written with this value");
}

namespace {

/// A definition's places for a column are not trusted: writing would follow them anywhere.
void needPlace(const TableDefinition& table, const Column& column) {
  const bool variable = !column.fixed && column.type != ColumnType::boolean;
  if (column.number >= table.maxColumns ||
      (variable && column.variableIndex >= table.variableColumns)) {
    raiseDamaged(table.page, "rows of table '" + table.name + "' have no place for column '" +
                                 column.name + "' of its definition");
  }
}

}  // namespace

Bytes encodeRow(Pager& pager, const TableDefinition& table, std::span<const Value> values,
                const RowView* before) {
  Bytes row(2);
  row.reserve(kUsualRowSize);
  store16(row.data(), table.maxColumns);
  Bytes mask((table.maxColumns + std::size_t{7}) / 8);
  std::vector<Bytes> variable(table.variableColumns);
  Bytes bytes;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const Column& column = table.columns[i];
    const Value& value = values[i];
    needPlace(table, column);
    const bool present = column.type == ColumnType::boolean ? value.toBoolean() : !value.isNull();
    if (present) {
      mask[column.number / 8] |= static_cast<std::uint8_t>(1 << (column.number % 8));
    }
    if (column.type == ColumnType::boolean) {
      continue;
    }
    if (column.fixed) {
      const std::size_t end = 2 + std::size_t{column.fixedOffset} + column.length;
      row.resize(std::max(row.size(), end));
      if (present) {
        encodeValue(bytes, column, value);
        if (bytes.size() > column.length) {
          raiseDamaged(table.page, "column '" + column.name + "' of table '" + table.name +
                                       "' has less room than its type takes");
        }
        std::copy(bytes.begin(), bytes.end(),
                  row.begin() + static_cast<std::ptrdiff_t>(end - column.length));
      }
    } else if (column.isLongValue()) {
      variable[column.variableIndex] = encodeLongValue(pager, column, value, before);
    } else if (present) {
      encodeValue(variable[column.variableIndex], column, value);
    }
  }
  if (table.variableColumns > 0) {
    std::vector<std::size_t> offsets;
    for (const Bytes& stored : variable) {
      offsets.push_back(row.size());
      row.insert(row.end(), stored.begin(), stored.end());
    }
    offsets.push_back(row.size());
    for (std::size_t i = offsets.size(); i-- > 0;) {
      append(row, static_cast<std::uint16_t>(offsets[i]));
    }
    append(row, static_cast<std::uint16_t>(table.variableColumns));
  }
  row.insert(row.end(), mask.begin(), mask.end());
  if (row.size() > pager.format().row.maxSize) {
    throw Error(kOverflow, "A row of table '" + table.name + "' would take " +
                               std::to_string(row.size()) + " bytes; at most " +
                               std::to_string(pager.format().row.maxSize) +
                               " are possible. Shorten its texts.");
  }
  return row;
}

}  // namespace orv::store::jet
