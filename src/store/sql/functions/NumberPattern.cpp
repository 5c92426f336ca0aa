#include "store/sql/functions/NumberPattern.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "errors/Error.h"

namespace orv::store::sql {
namespace {

/// Rounds to `decimals` digits, halves away from zero, by the 15 digits that a double holds.
double roundAway(double magnitude, std::size_t decimals) {
  const double factor = std::pow(10.0, static_cast<double>(decimals));
  if (magnitude * factor > 1e15) {
    return magnitude;
  }
  const std::string digits = fmt::format("{:.15g}", magnitude * factor);
  return std::round(std::strtod(digits.c_str(), nullptr)) / factor;
}

}  // namespace

NumberPattern::NumberPattern(std::string_view pattern) {
  for (const std::string& section : split(pattern)) {
    sections_.push_back(parse(section));
  }
}

std::vector<std::string> NumberPattern::split(std::string_view pattern) {
  std::vector<std::string> sections(1);
  bool quoted = false;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    quoted = quoted != (pattern[i] == '"');
    if (pattern[i] == ';' && !quoted) {
      sections.emplace_back();
      continue;
    }
    sections.back() += pattern[i];
    if (pattern[i] == '\\' && i + 1 < pattern.size()) {
      sections.back() += pattern[++i];
    }
  }
  return sections;
}

NumberPattern::Section NumberPattern::parse(std::string_view text) {
  using Kind = Token::Kind;
  Section section;
  bool afterPoint = false;
  std::size_t commas = 0;  ///< since the last digit
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '0' || c == '#') {
      section.grouped = section.grouped || (commas > 0 && !afterPoint);
      commas = 0;
      std::size_t& count = section.hasExponent ? section.exponentDigits
                           : afterPoint        ? section.decimals
                                               : section.wholeDigits;
      ++count;
      if (!section.hasExponent) {
        section.tokens.push_back({Kind::digit, std::string(1, c)});
      }
    } else if (c == ',' && section.wholeDigits > 0 && !afterPoint) {
      ++commas;
    } else if (c == '.' && !afterPoint) {
      section.thousands += static_cast<int>(commas);
      commas = 0;
      afterPoint = true;
      section.tokens.push_back({Kind::point});
    } else if ((c == 'E' || c == 'e') && i + 1 < text.size() &&
               (text[i + 1] == '+' || text[i + 1] == '-')) {
      section.hasExponent = true;
      section.tokens.push_back({Kind::exponent, std::string(text.substr(i, 2))});
      ++i;
    } else if (c == '"') {
      const std::size_t close = std::min(text.find('"', i + 1), text.size());
      section.tokens.push_back({Kind::literal, std::string(text.substr(i + 1, close - i - 1))});
      i = close;
    } else if (c == '\\') {
      section.tokens.push_back({Kind::literal, std::string(text.substr(i + 1, 1))});
      ++i;
    } else {
      section.percents += c == '%' ? 1 : 0;
      section.tokens.push_back({Kind::literal, std::string(1, c)});
    }
  }
  section.thousands += static_cast<int>(commas);
  return section;
}

std::string NumberPattern::format(double number) const {
  std::size_t chosen = number < 0 ? 1 : number == 0 ? 2 : 0;
  const bool own = chosen < sections_.size() && !sections_[chosen].tokens.empty();
  chosen = own ? chosen : 0;
  const std::string text = write(sections_[chosen], std::fabs(number));
  const bool nonzero = text.find_first_of("123456789") != std::string::npos;
  return number < 0 && !own && nonzero ? "-" + text : text;
}

std::string NumberPattern::write(const Section& section, double magnitude) {
  using Kind = Token::Kind;
  magnitude *= std::pow(100.0, section.percents) / std::pow(1000.0, section.thousands);
  int exponent = 0;
  if (section.hasExponent && magnitude != 0) {
    const int shift = static_cast<int>(std::max<std::size_t>(section.wholeDigits, 1)) - 1;
    exponent = static_cast<int>(std::floor(std::log10(magnitude))) - shift;
    magnitude /= std::pow(10.0, exponent);
    if (roundAway(magnitude, section.decimals) >= std::pow(10.0, shift + 1)) {
      magnitude /= 10;
      ++exponent;
    }
  }
  const double rounded = roundAway(magnitude, section.decimals);
  if (!std::isfinite(rounded)) {
    throw Error(kOverflow, "A number is too large for the pattern that it is to be shown by.");
  }
  const std::string digits = fmt::format("{:.{}f}", rounded, section.decimals);
  std::string whole = digits.substr(0, digits.find('.'));
  const std::string decimals =
      section.decimals > 0 ? digits.substr(digits.find('.') + 1) : std::string();
  if (whole == "0") {
    whole.clear();
  }

  // Digits that must show: from the first 0 of the whole part, up to the last one of the rest.
  std::size_t place = 0;
  std::size_t firstZero = section.wholeDigits;
  std::size_t lastDecimal = 0;
  for (const Token& token : section.tokens) {
    if (token.kind == Kind::digit) {
      if (place < section.wholeDigits && token.text == "0") {
        firstZero = std::min(firstZero, place);
      } else if (place >= section.wholeDigits &&
                 (token.text == "0" ||
                  decimals.find_first_not_of('0', place - section.wholeDigits) !=
                      std::string::npos)) {
        lastDecimal = place - section.wholeDigits + 1;
      }
      ++place;
    }
  }
  whole.insert(
      0, section.wholeDigits - firstZero - std::min(whole.size(), section.wholeDigits - firstZero),
      '0');

  std::string text;
  std::size_t written = 0;  ///< digits of the whole part
  const auto writeWhole = [&](std::size_t until) {
    for (; written < until; ++written) {
      text += whole[written];
      const std::size_t left = whole.size() - written - 1;
      if (section.grouped && left > 0 && left % 3 == 0) {
        text += ',';
      }
    }
  };
  place = 0;
  for (const Token& token : section.tokens) {
    switch (token.kind) {
      case Kind::literal:
        text += token.text;
        break;
      case Kind::point:
        writeWhole(whole.size());  // of a section without a place for them
        text += '.';
        break;
      case Kind::exponent:
        text += token.text[0];
        text += exponent < 0 ? "-" : token.text[1] == '+' ? "+" : "";
        text += fmt::format("{:0{}}", std::abs(exponent),
                            std::max<std::size_t>(section.exponentDigits, 1));
        break;
      case Kind::digit:
        if (place < section.wholeDigits) {
          const std::size_t after = section.wholeDigits - place - 1;
          writeWhole(whole.size() > after ? whole.size() - after : 0);
        } else if (place - section.wholeDigits < lastDecimal) {
          text += decimals[place - section.wholeDigits];
        }
        ++place;
        break;
    }
  }
  return text;
}

}  // namespace orv::store::sql
