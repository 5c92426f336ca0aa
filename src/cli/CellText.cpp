#include "cli/CellText.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>

namespace orv::cli {

namespace {

std::string hexadecimal(const store::Bytes& bytes) {
  std::string text = "0x";
  for (const std::uint8_t byte : bytes) fmt::format_to(std::back_inserter(text), "{:02x}", byte);
  return text;
}

std::string dateText(store::Date date) {
  using namespace std::chrono;
  const double whole = std::trunc(date.days);
  const auto time = seconds(std::llround(std::abs(date.days - whole) * 86400));
  const sys_days day = sys_days(year(1899) / December / 30) + days(std::llround(whole));
  const auto moment = sys_seconds(day) + time;
  const year_month_day calendar(floor<days>(moment));
  const hh_mm_ss clock(moment - floor<days>(moment));
  return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", int(calendar.year()),
                     unsigned(calendar.month()), unsigned(calendar.day()), clock.hours().count(),
                     clock.minutes().count(), clock.seconds().count());
}

}  // namespace

std::string cellText(const store::Value& value) {
  if (value.isNull()) return {};
  if (const auto* bytes = value.getIf<store::Bytes>()) return hexadecimal(*bytes);
  if (const auto* date = value.getIf<store::Date>()) return dateText(*date);
  return value.toText();
}

std::string jsonString(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
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
