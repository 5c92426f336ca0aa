#include "cli/ValueText.h"

#include <fmt/format.h>
#include <unicode/unistr.h>

#include <cmath>

namespace orv::cli {

namespace {

std::string hexadecimal(const store::Bytes& bytes) {
  std::string text = "0x";
  for (const std::uint8_t byte : bytes) fmt::format_to(std::back_inserter(text), "{:02x}", byte);
  return text;
}

/// A date with its time, also at midnight. What is no date, as damage leaves it, stays a number.
std::string dateText(const store::Value& date) {
  const std::string text = date.toText();
  const std::size_t dash = text.rfind('-');
  const bool isDay = dash != std::string::npos && dash > 0 && text.find(':') == std::string::npos;
  return isDay ? text + " 00:00:00" : text;
}

/// Names of files may be any bytes. What is no UTF-8 becomes the replacement character.
std::string validUtf8(std::string_view bytes) {
  std::string text;
  icu::UnicodeString::fromUTF8({bytes.data(), static_cast<std::int32_t>(bytes.size())})
      .toUTF8String(text);
  return text;
}

}  // namespace

std::string cellText(const store::Value& value) {
  if (value.isNull()) return {};
  if (const auto* bytes = value.getIf<store::Bytes>()) return hexadecimal(*bytes);
  if (value.getIf<store::Date>() != nullptr) return dateText(value);
  return value.toText();
}

std::string jsonString(std::string_view bytes) {
  std::string result = "\"";
  for (const char c : validUtf8(bytes)) {
    switch (c) {
      case '"':
        result += "\\\"";
        break;
      case '\\':
        result += "\\\\";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\r':
        result += "\\r";
        break;
      case '\t':
        result += "\\t";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          fmt::format_to(std::back_inserter(result), "\\u{:04x}", static_cast<unsigned>(c));
        } else {
          result += c;
        }
    }
  }
  return result + "\"";
}

std::string jsonValue(const store::Value& value) {
  if (value.isNull()) return "null";
  if (const bool* flag = value.getIf<bool>()) return *flag ? "true" : "false";
  if (!isNumber(value)) return jsonString(cellText(value));
  return std::isfinite(value.toDouble()) ? value.toText() : "null";
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  return count;
}

}  // namespace orv::cli
