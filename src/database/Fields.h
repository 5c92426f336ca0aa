// Conversions of field values as the records of the model want them.
#pragma once

#include <cstdint>
#include <string>

#include "store/Schema.h"
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
/// The text in a picture's column that holds no bytes, such as the path of a file; else empty.
std::string fieldToPictureText(const store::Value& value);

/// The value for a picture's column of this type: the bytes, else the text that stands for them,
/// as bytes where the column takes no text; Null when there is neither.
store::Value pictureToField(const store::Bytes& picture, const std::string& text,
                            store::ColumnType column);

}  // namespace orv::database
