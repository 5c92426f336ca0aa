#include "store/DefaultValue.h"

#include <cmath>
#include <ctime>

#include "errors/Error.h"
#include "store/jet/Text.h"

namespace orv::store {
namespace {

/// The local date and time.
Date now() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local{};
  localtime_r(&seconds, &local);
  // timegm() of the local fields counts days without regard to time zones.
  constexpr double kDaysTo1970 = 25569;
  return {kDaysTo1970 + static_cast<double>(timegm(&local)) / 86400.0};
}

}  // namespace

Value evaluateDefault(const std::string& expression, ColumnType type) {
  std::string text = expression;
  text.erase(0, text.find_first_not_of(" ="));
  text.erase(text.find_last_not_of(' ') + 1);
  if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') &&
      text.back() == text.front()) {
    const char quote = text.front();
    std::string content;
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
      content += text[i];
      i += text[i] == quote && text[i + 1] == quote ? 1 : 0;
    }
    return content;
  }
  const std::string word = jet::foldName(text);
  if (word == "true" || word == "yes" || word == "on") {
    return true;
  }
  if (word == "false" || word == "no" || word == "off") {
    return false;
  }
  if (word == "now()") {
    return now();
  }
  if (word == "date()") {
    return Date{std::floor(now().days)};
  }
  if (word == "time()") {
    return Date{now().days - std::floor(now().days)};
  }
  try {
    const double number = Value(text).toDouble();
    return type == ColumnType::boolean ? Value(number != 0) : Value(number);
  } catch (const Error&) {
    return {};
  }
}

}  // namespace orv::store
