#include "store/Value.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "errors/Error.h"

namespace orv::store {
namespace {

template <class... Ts>
struct Overloaded : Ts... {
  using Ts::operator()...;
};
template <class... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

[[noreturn]] void raiseNoNumber(std::string_view what) {
  throw Error(kTypeMismatch, fmt::format("Type mismatch: {} is no number", what));
}
[[noreturn]] void raiseNoText() {
  throw Error(kTypeMismatch, "Type mismatch: binary data is no text");
}
[[noreturn]] void raiseNull() {
  throw Error(kInvalidUseOfNull, "Invalid use of Null");
}

double numberFromText(std::string_view whole) {
  std::string_view text = whole;
  while (!text.empty() && text.front() == ' ') {
    text.remove_prefix(1);
  }
  while (!text.empty() && text.back() == ' ') {
    text.remove_suffix(1);
  }
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
  }
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || text.empty()) {
    raiseNoNumber(fmt::format("\"{}\"", whole));
  }
  return number;
}

std::string dateText(double days) {
  constexpr double kEndOfDates = 2'958'466;  // 1 January 10000; a damaged file may hold any number
  if (!(std::abs(days) < kEndOfDates)) {
    return fmt::format("{}", days);
  }
  // A negative date's fraction still counts forwards from midnight.
  const double whole = std::trunc(days);
  auto seconds = static_cast<std::int64_t>(std::llround(std::abs(days - whole) * 86400.0));
  auto day = static_cast<std::int64_t>(whole) + seconds / 86400;
  seconds %= 86400;
  // Civil date from a count of days since 1 March of year 0 (proleptic Gregorian).
  const std::int64_t z = day + 693899;
  const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const std::int64_t dayOfEra = z - era * 146097;
  const std::int64_t year =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * year + year / 4 - year / 100);
  const std::int64_t month = (5 * dayOfYear + 2) / 153;
  const std::int64_t civilMonth = month < 10 ? month + 3 : month - 9;
  const std::int64_t civilYear = year + era * 400 + (civilMonth <= 2 ? 1 : 0);
  const std::int64_t dayOfMonth = dayOfYear - (153 * month + 2) / 5 + 1;
  std::string text = fmt::format("{:04}-{:02}-{:02}", civilYear, civilMonth, dayOfMonth);
  if (seconds != 0) {
    text += fmt::format(" {:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
  }
  return text;
}

std::string currencyText(Currency amount) {
  const bool negative = amount.tenThousandths < 0;
  const std::uint64_t magnitude = negative ? 0 - static_cast<std::uint64_t>(amount.tenThousandths)
                                           : static_cast<std::uint64_t>(amount.tenThousandths);
  return fmt::format("{}{}.{:04}", negative ? "-" : "", magnitude / 10000, magnitude % 10000);
}

/// Divides a big-endian number by ten in place and returns the remainder.
unsigned divideByTen(std::array<std::uint8_t, 16>& number) {
  unsigned rest = 0;
  for (std::uint8_t& byte : number) {
    rest = rest << 8 | byte;
    byte = static_cast<std::uint8_t>(rest / 10);
    rest %= 10;
  }
  return rest;
}

void addOneInTheLastPlace(std::string& digits) {
  std::size_t at = digits.size();
  while (at > 0 && digits[at - 1] == '9') {
    digits[--at] = '0';
  }
  if (at == 0) {
    digits.insert(0, 1, '1');
  } else {
    ++digits[at - 1];
  }
}

}  // namespace

std::string Decimal::toText() const {
  std::array<std::uint8_t, 16> rest = magnitude;
  std::string digits;
  while (std::any_of(rest.begin(), rest.end(), [](std::uint8_t b) { return b != 0; })) {
    digits += static_cast<char>('0' + divideByTen(rest));
  }
  while (digits.size() <= scale) {
    digits += '0';
  }
  std::reverse(digits.begin(), digits.end());
  if (scale > 0) {
    digits.insert(digits.size() - scale, 1, '.');
  }
  if (negative) {
    digits.insert(0, 1, '-');
  }
  return digits;
}

double Decimal::toDouble() const {
  return numberFromText(toText());
}

Decimal Decimal::fromText(const std::string& text, std::uint8_t precision, std::uint8_t scale) {
  // Through the number's plain decimal form, so that "1e3" is taken too.
  const std::string plain = text.find_first_of("eE") == std::string::npos
                                ? text
                                : fmt::format("{:.{}f}", numberFromText(text), scale);
  numberFromText(plain);
  Decimal decimal;
  decimal.scale = scale;
  std::string digits;
  int decimals = -1;
  for (char c : plain) {
    if (c == '-') {
      decimal.negative = true;
    } else if (c == '.') {
      decimals = 0;
    } else if (c >= '0' && c <= '9' && decimals <= scale) {
      digits += c;
      decimals += decimals >= 0 ? 1 : 0;
    }
  }
  const bool roundUp = decimals > scale && digits.back() >= '5';
  if (decimals > scale) {
    digits.pop_back();
    decimals = scale;
  }
  digits.append(static_cast<std::size_t>(scale - std::max(decimals, 0)), '0');
  if (roundUp) {
    addOneInTheLastPlace(digits);
  }
  const std::size_t leading = std::min(digits.find_first_not_of('0'), digits.size());
  if (digits.size() - leading > precision || digits.size() - leading > 38) {
    throw Error(kOverflow, "Overflow");
  }
  decimal.negative = decimal.negative && leading < digits.size();
  for (char c : digits) {
    unsigned add = static_cast<unsigned>(c - '0');
    for (std::size_t i = decimal.magnitude.size(); i-- > 0;) {
      const unsigned product = decimal.magnitude[i] * 10u + add;
      decimal.magnitude[i] = static_cast<std::uint8_t>(product);
      add = product >> 8;
    }
  }
  return decimal;
}

std::string Guid::toText() const {
  return fmt::format(
      "{{{:02X}{:02X}{:02X}{:02X}-{:02X}{:02X}-{:02X}{:02X}-{:02X}{:02X}-"
      "{:02X}{:02X}{:02X}{:02X}{:02X}{:02X}}}",
      bytes[3], bytes[2], bytes[1], bytes[0], bytes[5], bytes[4], bytes[7], bytes[6], bytes[8],
      bytes[9], bytes[10], bytes[11], bytes[12], bytes[13], bytes[14], bytes[15]);
}

bool Value::toBoolean() const {
  if (const bool* flag = getIf<bool>()) {
    return *flag;
  }
  if (const std::string* text = getIf<std::string>()) {
    if (*text == "True" || *text == "true" || *text == "TRUE") {
      return true;
    }
    if (*text == "False" || *text == "false" || *text == "FALSE") {
      return false;
    }
  }
  return toDouble() != 0;
}

std::int32_t Value::toLong() const {
  const double number = std::nearbyint(toDouble());
  if (!(number >= std::numeric_limits<std::int32_t>::min() &&
        number <= std::numeric_limits<std::int32_t>::max())) {
    throw Error(kOverflow, "Overflow");
  }
  return static_cast<std::int32_t>(number);
}

double Value::toDouble() const {
  return std::visit(Overloaded{
                        [](std::monostate) -> double { raiseNull(); },
                        [](bool v) { return v ? -1.0 : 0.0; },
                        [](std::int32_t v) { return static_cast<double>(v); },
                        [](std::int64_t v) { return static_cast<double>(v); },
                        [](float v) { return static_cast<double>(v); },
                        [](double v) { return v; },
                        [](Currency v) { return static_cast<double>(v.tenThousandths) / 10000.0; },
                        [](Date v) { return v.days; },
                        [](const Decimal& v) { return v.toDouble(); },
                        [](const Guid& v) -> double { raiseNoNumber(v.toText()); },
                        [](const std::string& v) { return numberFromText(v); },
                        [](const Bytes&) -> double { raiseNoNumber("binary data"); },
                    },
                    v_);
}

std::string Value::toText() const {
  return std::visit(Overloaded{
                        [](std::monostate) -> std::string { raiseNull(); },
                        [](bool v) -> std::string { return v ? "True" : "False"; },
                        [](std::int32_t v) { return fmt::to_string(v); },
                        [](std::int64_t v) { return fmt::to_string(v); },
                        [](float v) { return fmt::format("{}", v); },
                        [](double v) { return fmt::format("{}", v); },
                        [](Currency v) { return currencyText(v); },
                        [](Date v) { return dateText(v.days); },
                        [](const Decimal& v) { return v.toText(); },
                        [](const Guid& v) { return v.toText(); },
                        [](const std::string& v) { return v; },
                        [](const Bytes&) -> std::string { raiseNoText(); },
                    },
                    v_);
}

}  // namespace orv::store
