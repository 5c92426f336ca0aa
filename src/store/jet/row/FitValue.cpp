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

/// Nothing where the value is as the column holds it already.
using Changed = std::optional<Value>;

Changed fitWhole(const std::string& table, const Column& column, const Value& value,
                 std::int32_t lowest, std::int32_t highest) {
  const std::int32_t* whole = value.getIf<std::int32_t>();
  if (whole != nullptr && *whole >= lowest && *whole <= highest) return {};
  const double number = std::nearbyint(value.toDouble());
  if (!(number >= lowest && number <= highest)) {
    raiseFor(table, column, kOverflow, "cannot hold the number " + value.toText());
  }
  return static_cast<std::int32_t>(number);
}

Changed fitSingle(const std::string& table, const Column& column, const Value& value) {
  if (value.getIf<float>() != nullptr) return {};
  const double number = value.toDouble();
  if (std::isfinite(number) && std::abs(number) > std::numeric_limits<float>::max()) {
    raiseFor(table, column, kOverflow, "cannot hold the number " + value.toText());
  }
  return static_cast<float>(number);
}

Changed fitCurrency(const std::string& table, const Column& column, const Value& value) {
  if (value.getIf<Currency>() != nullptr) return {};
  const double amount = std::nearbyint(value.toDouble() * 10000.0);
  if (!(std::abs(amount) < 0x1p63)) {
    raiseFor(table, column, kOverflow, "cannot hold the amount " + value.toText());
  }
  return Currency{static_cast<std::int64_t>(amount)};
}

/// A character is one or two bytes there, and at least as many here.
bool isTooLong(const Column& column, const std::string& text) {
  return column.type == ColumnType::text && text.size() * 2 > column.length &&
         utf16FromUtf8(text).size() * 2 > column.length;
}

Changed fitText(const std::string& table, const Column& column, const Value& value) {
  const std::string* there = value.getIf<std::string>();
  Changed changed;
  if (there == nullptr) there = changed.emplace(value.toText()).getIf<std::string>();
  const std::string& text = *there;
  if (text.empty() && !column.allowZeroLength) {
    raiseFor(table, column, kDuplicateKey, "does not take empty text");
  }
  if (isTooLong(column, text)) {
    raiseFor(table, column, kOverflow,
             "holds at most " + std::to_string(column.length / 2) + " characters, and the text '" +
                 text.substr(0, 60) + (text.size() > 60 ? "…' is longer" : "' is longer"));
  }
  return changed;
}

Changed fitBytes(const std::string& table, const Column& column, const Value& value) {
  const Bytes* bytes = value.getIf<Bytes>();
  if (bytes == nullptr) {
    raiseFor(table, column, kTypeMismatch, "takes bytes only");
  }
  if (column.type == ColumnType::binary && bytes->size() > column.length) {
    raiseFor(table, column, kOverflow, "holds at most " + std::to_string(column.length) + " bytes");
  }
  return {};
}

Changed fitByType(const std::string& table, const Column& column, const Value& value) {
  using Longs = std::numeric_limits<std::int32_t>;
  switch (column.type) {
    case ColumnType::boolean:
      if (value.getIf<bool>() != nullptr) return {};
      return value.toBoolean();
    case ColumnType::byte:
      return fitWhole(table, column, value, 0, 255);
    case ColumnType::integer:
      return fitWhole(table, column, value, -32768, 32767);
    case ColumnType::longInteger:
      return fitWhole(table, column, value, Longs::min(), Longs::max());
    case ColumnType::single:
      return fitSingle(table, column, value);
    case ColumnType::double_:
      return value.getIf<double>() != nullptr ? Changed() : value.toDouble();
    case ColumnType::dateTime:
      return value.getIf<Date>() != nullptr ? Changed() : Date{value.toDouble()};
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
      if (value.getIf<Guid>() != nullptr) return {};
      break;
    default:
      break;
  }
  raiseFor(table, column, kNotSupported, "is of a type that cannot be written with this value");
}

}  // namespace

std::optional<Value> changedToFit(const std::string& table, const Column& column,
                                  const Value& value) {
  if (value.isNull()) {
    if (column.type == ColumnType::boolean) return false;
    if (column.required) raiseFor(table, column, kDuplicateKey, "must have a value");
    return {};
  }
  try {
    return fitByType(table, column, value);
  } catch (const Error& error) {
    if (error.description().find("Column '") == 0) throw;
    const bool isText = value.getIf<Bytes>() == nullptr;
    raiseFor(table, column, error.number(),
             "cannot hold " + (isText ? "'" + value.toText() + "'" : "bytes"));
  }
}

Value fitValue(const std::string& table, const Column& column, const Value& value) {
  return changedToFit(table, column, value).value_or(value);
}

}  // namespace orv::store::jet
