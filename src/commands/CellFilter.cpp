#include "commands/CellFilter.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "commands/CellText.h"
#include "model/Text.h"

namespace orv::commands {

namespace {

/// The whole text as a number; a comma is taken as the point.
std::optional<double> numberIn(std::string_view text) {
  std::string plain(trimmed(text));
  if (const auto comma = plain.find(','); comma != std::string::npos) plain[comma] = '.';
  double number = 0;
  const char* end = plain.data() + plain.size();
  const auto [last, error] = std::from_chars(plain.data(), end, number);
  if (error != std::errc() || last != end || std::isnan(number)) return std::nullopt;
  return number;
}

/// A field in single precision stands for the number that its shortest text says.
double numberOf(const store::Value& value) {
  const double number = value.toDouble();
  return value.getIf<float>() != nullptr ? numberIn(value.toText()).value_or(number) : number;
}

}  // namespace

CellFilter::CellFilter(std::string_view text, bool isNumber) {
  text = trimmed(text);
  if (text.empty() || (isNumber && parseNumbers(text))) return;
  const bool exact = text.front() == '=';
  kind_ = exact ? Kind::equals : Kind::contains;
  text_ = lowerCase(exact ? trimmed(text.substr(1)) : text);
  isFinished_ = isNumber ? !exact || text_.empty() : text.front() != '<' && text.front() != '>';
}

/// Whether the text is a comparison of numbers, finished or not.
bool CellFilter::parseNumbers(std::string_view text) {
  if (const auto dots = text.find(".."); dots != std::string_view::npos) {
    low_ = numberIn(text.substr(0, dots));
    high_ = numberIn(text.substr(dots + 2));
    if (low_ || high_) kind_ = Kind::range;
    isFinished_ = low_ && high_;
    return true;
  }
  const char sign = text.front();
  if (sign != '<' && sign != '>' && sign != '=') return false;
  const bool orEqual = text.size() > 1 && text[1] == '=';
  const auto number = numberIn(text.substr(orEqual ? 2 : 1));
  if (!number) return sign != '=';
  isFinished_ = true;
  if (sign != '<') atLeast(*number, sign == '=' || orEqual);
  if (sign != '>') atMost(*number, sign == '=' || orEqual);
  return true;
}

void CellFilter::atLeast(double number, bool orEqual) {
  kind_ = Kind::range;
  low_ = orEqual ? number : std::nextafter(number, std::numeric_limits<double>::infinity());
}

void CellFilter::atMost(double number, bool orEqual) {
  kind_ = Kind::range;
  high_ = orEqual ? number : std::nextafter(number, -std::numeric_limits<double>::infinity());
}

bool CellFilter::accepts(const store::Value& value, int digits) const {
  if (const bool* flag = value.getIf<bool>(); flag && text_ == (*flag ? "true" : "false")) {
    return true;
  }
  switch (kind_) {
    case Kind::all:
      break;
    case Kind::range: {
      if (!isNumber(value)) return false;
      const double number = numberOf(value);
      return (!low_ || number >= *low_) && (!high_ || number <= *high_);
    }
    case Kind::equals:
      return lowerCase(cellText(value, digits)) == text_;
    case Kind::contains:
      return lowerCase(cellText(value, digits)).find(text_) != std::string::npos;
  }
  return true;
}

}  // namespace orv::commands
