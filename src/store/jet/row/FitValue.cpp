#include "store/jet/row/FitValue.h"

#include <cmath>
#include <limits>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

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

}  // namespace

bool fitsAsItIs(const Column& column, const Value& value) {
  if (value.isNull()) return !column.required && column.type != ColumnType::boolean;
  switch (column.type) {
    case ColumnType::boolean:
      return value.getIf<bool>() != nullptr;
    case ColumnType::longInteger:
      return value.getIf<std::int32_t>() != nullptr;
    case ColumnType::integer: {
      const std::int32_t* number = value.getIf<std::int32_t>();
      return number != nullptr && *number == static_cast<std::int16_t>(*number);
    }
    case ColumnType::single:
      return value.getIf<float>() != nullptr;
    case ColumnType::double_:
      return value.getIf<double>() != nullptr;
    case ColumnType::dateTime:
      return value.getIf<Date>() != nullptr;
    default:
      return false;
  }
}

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

}  // namespace orv::store::jet
