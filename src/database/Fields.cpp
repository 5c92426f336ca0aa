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

store::Value pictureToField(const store::Bytes& picture) {
  return picture.empty() ? store::Value() : store::Value(picture);
}

}  // namespace orv::database
