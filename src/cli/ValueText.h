// Values of rows as texts.
#pragma once

#include <string>
#include <string_view>

#include "commands/CellText.h"
#include "store/Value.h"

namespace orv::cli {

/// Null is empty; see RowWriter.h for bytes and dates.
std::string cellText(const store::Value& value);

/// The text as a string of JSON, in quotation marks.
std::string jsonString(std::string_view text);

/// A number, true, false or null where the value is one, else a string.
std::string jsonValue(const store::Value& value);

using commands::isNumber;

/// Number of characters of a UTF-8 text.
std::size_t characterCount(std::string_view text);

}  // namespace orv::cli
