// Values of fields as people read them.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "model/Codes.h"
#include "store/Value.h"

namespace orv::commands {

/// Number of significant digits that stands for all that a number has.
inline constexpr int kAllDigits = 0;

/// A number as it is read best: plain from a ten-thousandth to ten millions, without zeros at its
/// end, rounded to `digits` significant digits; the digits before the point always stay.
std::string numberText(double number, int digits);

/// A field in a cell. Null is empty; flags are "Yes" and "No"; pictures are told by their size;
/// dates are "2024-12-31" with the time where there is one. Only fractional numbers are rounded.
std::string cellText(const store::Value& value, int digits);

/// A code's name and the code, "Screen (3)"; the code alone where it has no name.
std::string codeText(std::span<const CodeName> names, std::int32_t code);

/// Whether a field is a number, to be lined up on the right and compared as such.
bool isNumber(const store::Value& value);

}  // namespace orv::commands
