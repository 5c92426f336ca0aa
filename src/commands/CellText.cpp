#include "commands/CellText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace orv::commands {

namespace {

constexpr double kSmallestPlain = 1e-4;
constexpr double kLargestPlain = 1e7;

std::string withoutEndingZeros(std::string text) {
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text == "-0" ? "0" : text;
}

}  // namespace

std::string numberText(double number, int digits) {
  const double size = std::abs(number);
  if (!std::isfinite(number) || digits == kAllDigits) return fmt::format("{}", number);
  if (size != 0 && (size < kSmallestPlain || size >= kLargestPlain)) {
    return fmt::format("{:.{}g}", number, digits);
  }
  const int before = size < 1 ? (size == 0 ? 1 : static_cast<int>(std::floor(std::log10(size))) + 1)
                              : static_cast<int>(std::log10(size)) + 1;
  return withoutEndingZeros(fmt::format("{:.{}f}", number, std::max(digits - before, 0)));
}

std::string cellText(const store::Value& value, int digits) {
  if (value.isNull()) return {};
  if (const bool* flag = value.getIf<bool>()) return *flag ? "Yes" : "No";
  if (const auto* bytes = value.getIf<store::Bytes>())
    return fmt::format("{} bytes", bytes->size());
  const bool fraction = value.getIf<float>() != nullptr || value.getIf<double>() != nullptr;
  return fraction && digits != kAllDigits ? numberText(value.toDouble(), digits) : value.toText();
}

std::string codeText(std::span<const CodeName> names, std::int32_t code) {
  const auto name = nameOf(names, code);
  return name ? fmt::format("{} ({})", *name, code) : fmt::format("{}", code);
}

bool isNumber(const store::Value& value) {
  return value.getIf<std::int32_t>() || value.getIf<std::int64_t>() || value.getIf<float>() ||
         value.getIf<double>() || value.getIf<store::Currency>() || value.getIf<store::Decimal>();
}

}  // namespace orv::commands
