#include "store/DefaultValue.h"

#include <cmath>

#include "errors/Error.h"
#include "store/jet/file/Clock.h"
#include "store/jet/page/Text.h"

namespace orv::store {
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
    return jet::localTime();
  }
  if (word == "date()") {
    return Date{std::floor(jet::localTime().days)};
  }
  if (word == "time()") {
    const double time = jet::localTime().days;
    return Date{time - std::floor(time)};
  }
  try {
    const double number = Value(text).toDouble();
    return type == ColumnType::boolean ? Value(number != 0) : Value(number);
  } catch (const Error&) {
    return {};
  }
}

}  // namespace orv::store
