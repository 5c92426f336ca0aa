#include "database/Fields.h"

#include <limits>

#include "errors/Error.h"
#include "model/Single.h"

namespace orv::database {

std::string FieldToString(const store::Value& value) {
  return value.isNull() ? std::string() : value.toText();
}

double FieldToDouble(const store::Value& value) {
  return value.isNull() ? 0.0 : value.toDouble();
}

std::int32_t FieldToLong(const store::Value& value) {
  return value.isNull() ? 0 : value.toLong();
}

float fieldToSingle(const store::Value& value) {
  return toSingle(FieldToDouble(value));
}

std::int16_t fieldToInteger(const store::Value& value) {
  const std::int32_t number = value.toLong();
  if (number < std::numeric_limits<std::int16_t>::min() ||
      number > std::numeric_limits<std::int16_t>::max()) {
    throw Error(kOverflow, "The number " + value.toText() + " does not fit 16 bits.");
  }
  return static_cast<std::int16_t>(number);
}

store::Bytes fieldToPicture(const store::Value& value) {
  const store::Bytes* bytes = value.getIf<store::Bytes>();
  return bytes ? *bytes : store::Bytes();
}

std::string fieldToPictureText(const store::Value& value) {
  return value.isNull() || value.getIf<store::Bytes>() != nullptr ? std::string() : value.toText();
}

store::Value pictureToField(const store::Bytes& picture, const std::string& text,
                            store::ColumnType column) {
  if (!picture.empty()) return picture;
  if (text.empty()) return {};
  const bool takesText = column == store::ColumnType::text || column == store::ColumnType::memo;
  return takesText ? store::Value(text) : store::Value(store::Bytes(text.begin(), text.end()));
}

}  // namespace orv::database
