#include "store/sql/run/KeyBound.h"

#include <cmath>
#include <limits>
#include <string>

namespace orv::store::sql {
namespace {

using Kind = KeyBound::Kind;

template <class Whole>
KeyBound wholeBound(double number, double least, double most, BoundSide side) {
  const double rounded = side == BoundSide::lower ? std::ceil(number) : std::floor(number);
  if (side == BoundSide::equal && rounded != number) {
    return {Kind::nothing};
  }
  if (rounded < least) {
    return {side == BoundSide::lower ? Kind::all : Kind::nothing};
  }
  if (rounded > most) {
    return {side == BoundSide::upper ? Kind::all : Kind::nothing};
  }
  return {Kind::value, Value(static_cast<Whole>(rounded))};
}

KeyBound numberBound(ColumnType type, double number, BoundSide side) {
  // The key of -0 comes before that of 0.
  if (number == 0) {
    number = side == BoundSide::lower ? -0.0 : 0.0;
  }
  switch (type) {
    case ColumnType::byte:
      return wholeBound<std::int32_t>(number, 0, 255, side);
    case ColumnType::integer:
      return wholeBound<std::int32_t>(number, -32768, 32767, side);
    case ColumnType::longInteger:
      return wholeBound<std::int32_t>(number, std::numeric_limits<std::int32_t>::min(),
                                      std::numeric_limits<std::int32_t>::max(), side);
    case ColumnType::single:
      // No single lies between a number and the single that is nearest to it.
      return {Kind::value, Value(static_cast<float>(number))};
    case ColumnType::double_:
      return {Kind::value, Value(number)};
    case ColumnType::dateTime:
      return {Kind::value, Value(Date{number})};
    default:
      return {};
  }
}

}  // namespace

bool isSearchable(ColumnType type) {
  switch (type) {
    case ColumnType::byte:
    case ColumnType::integer:
    case ColumnType::longInteger:
    case ColumnType::single:
    case ColumnType::double_:
    case ColumnType::dateTime:
    case ColumnType::text:
    case ColumnType::memo:
      return true;
    default:
      return false;
  }
}

bool hasTwoZeros(ColumnType type) {
  return type == ColumnType::single || type == ColumnType::double_ || type == ColumnType::dateTime;
}

KeyBound keyBound(const jet::Column& column, sqlite3_value* value, BoundSide side) {
  if (sqlite3_value_type(value) == SQLITE_NULL) {
    return {Kind::nothing};
  }
  if (column.type == ColumnType::text || column.type == ColumnType::memo) {
    if (sqlite3_value_type(value) == SQLITE_BLOB) {
      return {};
    }
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return {Kind::value,
            Value(std::string(text, static_cast<std::size_t>(sqlite3_value_bytes(value))))};
  }
  const int type = sqlite3_value_numeric_type(value);
  if (type != SQLITE_INTEGER && type != SQLITE_FLOAT) {
    return {};
  }
  return numberBound(column.type, sqlite3_value_double(value), side);
}

}  // namespace orv::store::sql
