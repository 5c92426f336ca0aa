#include "store/sql/run/OutputValue.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "errors/Error.h"
#include "store/sql/translate/Catalog.h"

namespace orv::store::sql {
namespace {

std::string textOf(sqlite3_stmt* statement, int index) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, index));
  return text == nullptr
             ? std::string()
             : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, index)));
}

Value wholeNumber(std::int64_t number) {
  const bool isLong = number >= std::numeric_limits<std::int32_t>::min() &&
                      number <= std::numeric_limits<std::int32_t>::max();
  return isLong ? Value(static_cast<std::int32_t>(number)) : Value(number);
}

Value numberOfType(ColumnType type, sqlite3_stmt* statement, int index) {
  const double number = sqlite3_column_double(statement, index);
  switch (type) {
    case ColumnType::boolean:
      return Value(number != 0);
    case ColumnType::single:
      return Value(static_cast<float>(number));
    case ColumnType::double_:
    case ColumnType::numeric:
      return Value(number);
    case ColumnType::dateTime:
      return Value(Date{number});
    case ColumnType::currency:
      return std::fabs(number) < 9.2e14 ? Value(Currency{std::llround(number * 10000)})
                                        : Value(number);
    case ColumnType::bigInteger:
      if (sqlite3_column_type(statement, index) == SQLITE_INTEGER) {
        return Value(static_cast<std::int64_t>(sqlite3_column_int64(statement, index)));
      }
      break;
    default:
      break;
  }
  return sqlite3_column_type(statement, index) == SQLITE_INTEGER
             ? wholeNumber(sqlite3_column_int64(statement, index))
             : Value(number);
}

/// Fixed-point numbers come as text, so that no digit is lost.
Value decimalFromText(const std::string& text, bool currency) {
  const std::size_t point = text.find('.');
  const std::size_t decimals = point == std::string::npos ? 0 : text.size() - point - 1;
  if (!currency) {
    return Value(Decimal::fromText(text, 38, static_cast<std::uint8_t>(decimals)));
  }
  std::string digits = text;
  std::erase(digits, '.');
  digits.append(decimals < 4 ? 4 - decimals : 0, '0');
  Currency amount;
  if (std::from_chars(digits.data(), digits.data() + digits.size(), amount.tenThousandths).ec !=
      std::errc()) {
    throw Error(kOverflow, "The amount " + text + " is too large for a currency.");
  }
  return Value(amount);
}

Value textOfType(const TypedColumn& column, std::string text) {
  if (!column.typed) {
    return Value(std::move(text));
  }
  if (isDecimalType(column.info.type)) {
    return decimalFromText(text, column.info.type == ColumnType::currency);
  }
  return column.info.type == ColumnType::guid ? guidFromText(text) : Value(std::move(text));
}

int hexDigit(char c) {
  const int upper = std::toupper(static_cast<unsigned char>(c));
  return upper >= '0' && upper <= '9'   ? upper - '0'
         : upper >= 'A' && upper <= 'F' ? upper - 'A' + 10
                                        : -1;
}

}  // namespace

Value guidFromText(const std::string& text) {
  // Places of the text's bytes in the file: the first three groups are little-endian.
  constexpr std::size_t kPlaces[16] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
  Guid guid;
  std::size_t digits = 0;
  for (const char c : text) {
    if (c == '{' || c == '}' || c == '-') {
      continue;
    }
    const int digit = hexDigit(c);
    if (digit < 0 || digits >= 32) {
      return Value(text);
    }
    auto& byte = guid.bytes[kPlaces[digits / 2]];
    byte = static_cast<std::uint8_t>(byte << 4 | digit);
    ++digits;
  }
  return digits == 32 ? Value(guid) : Value(text);
}

Value outputValue(sqlite3_stmt* statement, int index, const TypedColumn& column) {
  switch (sqlite3_column_type(statement, index)) {
    case SQLITE_INTEGER:
      return column.typed ? numberOfType(column.info.type, statement, index)
                          : wholeNumber(sqlite3_column_int64(statement, index));
    case SQLITE_FLOAT:
      return column.typed ? numberOfType(column.info.type, statement, index)
                          : Value(sqlite3_column_double(statement, index));
    case SQLITE_TEXT:
      return textOfType(column, textOf(statement, index));
    case SQLITE_BLOB: {
      const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(statement, index));
      return Value(Bytes(bytes, bytes + sqlite3_column_bytes(statement, index)));
    }
    default:
      return {};
  }
}

}  // namespace orv::store::sql
