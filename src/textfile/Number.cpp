#include "textfile/Number.h"

#include <fmt/format.h>

#include <charconv>

namespace orv::textfile {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Keeps out what from_chars takes but no file means by a number: "inf", "nan", a second sign.
bool looksLikeNumber(std::string_view text) {
  if (text.starts_with('-')) {
    text.remove_prefix(1);
  }
  return !text.empty() && (isDigit(text.front()) || text.front() == '.');
}

template <class T>
std::optional<T> parse(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) {
      return std::nullopt;
    }
  }
  if (!looksLikeNumber(text)) {
    return std::nullopt;
  }
  T value{};
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = failure == std::errc() && end == text.data() + text.size();
  return whole ? std::optional(value) : std::nullopt;
}

}  // namespace

std::optional<float> parseSingle(std::string_view text) {
  return parse<float>(text);
}

std::optional<double> parseDouble(std::string_view text) {
  return parse<double>(text);
}

std::optional<std::int32_t> parseWhole(std::string_view text) {
  return parse<std::int32_t>(text);
}

std::string formatNumber(float value) {
  return fmt::format("{}", value);
}

std::string formatNumber(double value) {
  return fmt::format("{}", value);
}

}  // namespace orv::textfile
