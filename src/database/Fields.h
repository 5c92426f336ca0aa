// Conversions of field values as the records of the model want them.
#pragma once

#include <cstdint>
#include <string>

#include "store/Value.h"

namespace orv::database {

/// Null gives the empty text.
std::string FieldToString(const store::Value& value);
/// Null gives 0. Raises kTypeMismatch for text that is no number.
double FieldToDouble(const store::Value& value);
/// Null gives 0. Raises kTypeMismatch, and kOverflow for a number beyond 32 bits.
std::int32_t FieldToLong(const store::Value& value);
/// FieldToDouble in single precision. Raises kOverflow for a number that does not fit.
float fieldToSingle(const store::Value& value);
/// A whole number of 16 bits; Null is refused. Raises kInvalidUseOfNull, kTypeMismatch, kOverflow.
std::int16_t fieldToInteger(const store::Value& value);

/// The bytes of a picture; Null gives none.
store::Bytes fieldToPicture(const store::Value& value);
/// The value of a picture's column; no bytes give Null.
store::Value pictureToField(const store::Bytes& picture);

}  // namespace orv::database
