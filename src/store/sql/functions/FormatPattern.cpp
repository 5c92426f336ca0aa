#include "store/sql/functions/FormatPattern.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <vector>

#include "store/Value.h"
#include "store/sql/functions/Arguments.h"
#include "store/sql/functions/DateText.h"
#include "store/sql/functions/NumberPattern.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

struct NamedPattern {
  std::string_view name;
  std::string_view pattern;
};

constexpr NamedPattern kNumberPatterns[] = {
    {"CURRENCY", "$#,##0.00;($#,##0.00)"},
    {"FIXED", "0.00"},
    {"STANDARD", "#,##0.00"},
    {"PERCENT", "0.00%"},
    {"SCIENTIFIC", "0.00E+00"},
    {"YES/NO", "\"Yes\";\"Yes\";\"No\""},
    {"TRUE/FALSE", "\"True\";\"True\";\"False\""},
    {"ON/OFF", "\"On\";\"On\";\"Off\""},
};

constexpr NamedPattern kDatePatterns[] = {
    {"GENERAL DATE", "c"},          {"LONG DATE", "dddd, mmmm d, yyyy"},
    {"MEDIUM DATE", "dd-mmm-yy"},   {"SHORT DATE", "yyyy-mm-dd"},
    {"LONG TIME", "h:nn:ss AM/PM"}, {"MEDIUM TIME", "hh:nn AM/PM"},
    {"SHORT TIME", "hh:nn"},
};

template <std::size_t size>
std::string_view named(const NamedPattern (&patterns)[size], std::string_view pattern) {
  const std::string upper = upperWord(pattern);
  for (const NamedPattern& candidate : patterns) {
    if (candidate.name == upper) {
      return candidate.pattern;
    }
  }
  return pattern;
}

/// Goes through a pattern of dates.
class DateFormatter {
 public:
  DateFormatter(double days, std::string_view pattern)
      : days_(days), date_(toCalendar(days)), pattern_(pattern), upper_(upperWord(pattern)) {
    halves_ = upper_.find("AM/PM") != std::string::npos ||
              upper_.find("A/P") != std::string::npos || upper_.find("AMPM") != std::string::npos;
  }

  std::string run() {
    while (at_ < pattern_.size()) {
      const char c = pattern_[at_];
      if (c == '"') {
        const std::size_t close = std::min(pattern_.find('"', at_ + 1), pattern_.size());
        text_ += pattern_.substr(at_ + 1, close - at_ - 1);
        at_ = close + 1;
      } else if (c == '\\') {
        text_ += pattern_.substr(std::min(at_ + 1, pattern_.size()), 1);
        at_ += 2;
      } else if (!half() && !part()) {
        text_ += c;
        ++at_;
      }
    }
    return std::move(text_);
  }

 private:
  bool half() {
    struct Mark {
      std::string_view mark;
      std::size_t letters;
    };
    for (const Mark& mark : {Mark{"AM/PM", 2}, Mark{"AMPM", 2}, Mark{"A/P", 1}}) {
      if (upper_.compare(at_, mark.mark.size(), mark.mark) == 0) {
        std::string word = date_.hour < 12 ? "AM" : "PM";
        word.resize(mark.letters);
        if (std::islower(static_cast<unsigned char>(pattern_[at_])) != 0) {
          std::transform(word.begin(), word.end(), word.begin(),
                         [](unsigned char c) { return std::tolower(c); });
        }
        text_ += word;
        at_ += mark.mark.size();
        return true;
      }
    }
    return false;
  }

  /// A run of one letter that stands for a part of the date.
  bool part() {
    const char letter = upper_[at_];
    const std::size_t end = std::min(upper_.find_first_not_of(letter, at_), upper_.size());
    const std::size_t count = end - at_;
    std::string text;
    switch (letter) {
      case 'C':
        text = Value(Date{days_}).toText();
        break;
      case 'D':
        text = day(count);
        break;
      case 'M':
        text = afterHour_ && count <= 2 ? number(date_.minute, count) : month(count);
        break;
      case 'Y':
        text = count == 1   ? fmt::format("{}", date_.dayOfYear)
               : count == 2 ? fmt::format("{:02}", date_.year % 100)
                            : fmt::format("{:04}", date_.year);
        break;
      case 'Q':
        text = fmt::format("{}", (date_.month + 2) / 3);
        break;
      case 'W':
        text = count == 1 ? fmt::format("{}", date_.weekday)
                          : fmt::format("{}", (date_.dayOfYear + 6 - date_.weekday) / 7 + 1);
        break;
      case 'H':
        text = number(halves_ ? (date_.hour + 11) % 12 + 1 : date_.hour, count);
        break;
      case 'N':
        text = number(date_.minute, count);
        break;
      case 'S':
        text = number(date_.second, count);
        break;
      default:
        return false;
    }
    afterHour_ = letter == 'H';
    text_ += text;
    at_ = end;
    return true;
  }

  static std::string number(int value, std::size_t count) {
    return count == 1 ? fmt::format("{}", value) : fmt::format("{:02}", value);
  }

  std::string day(std::size_t count) const {
    switch (count) {
      case 1:
      case 2:
        return number(date_.day, count);
      case 3:
        return std::string(weekdayName(date_.weekday).substr(0, 3));
      case 4:
        return std::string(weekdayName(date_.weekday));
      default:
        return formatDate(days_, count == 5 ? "Short Date" : "Long Date");
    }
  }

  std::string month(std::size_t count) const {
    return count <= 2   ? number(date_.month, count)
           : count == 3 ? std::string(monthName(date_.month).substr(0, 3))
                        : std::string(monthName(date_.month));
  }

  double days_;
  Calendar date_;
  std::string_view pattern_;
  std::string upper_;
  std::string text_;
  std::size_t at_ = 0;
  bool halves_ = false;     ///< hours run to 12
  bool afterHour_ = false;  ///< an m after the hours stands for minutes
};

}  // namespace

std::string formatNumber(double number, std::string_view pattern) {
  if (pattern.empty() || upperWord(pattern) == "GENERAL NUMBER") {
    return numberText(number);
  }
  return NumberPattern(named(kNumberPatterns, pattern)).format(number);
}

std::string formatDate(double days, std::string_view pattern) {
  return DateFormatter(days, named(kDatePatterns, pattern)).run();
}

std::string formatText(const std::string& text, std::string_view pattern) {
  std::u32string characters = decodeUtf8(text);
  const bool upper = pattern.find('>') != std::string_view::npos;
  if (upper || pattern.find('<') != std::string_view::npos) {
    std::transform(characters.begin(), characters.end(), characters.begin(),
                   upper ? upperCharacter : lowerCharacter);
  }
  const auto places = static_cast<std::size_t>(
      std::count_if(pattern.begin(), pattern.end(), [](char c) { return c == '@' || c == '&'; }));
  if (places == 0) {
    return encodeUtf8(characters);
  }
  // Characters fill the places from the right; those too many stand before the first place.
  std::size_t missing = places - std::min(places, characters.size());
  std::size_t next = characters.size() - std::min(places, characters.size());
  std::u32string filled = characters.substr(0, next);
  for (const char32_t c : decodeUtf8(pattern)) {
    if (c == U'@' || c == U'&') {
      if (missing > 0) {
        --missing;
        filled += c == U'@' ? U" " : U"";
      } else {
        filled += characters[next++];
      }
    } else if (c != U'<' && c != U'>' && c != U'!') {
      filled += c;
    }
  }
  return encodeUtf8(filled);
}

bool isDatePattern(std::string_view pattern) {
  const std::string upper = upperWord(pattern);
  for (const NamedPattern& candidate : kDatePatterns) {
    if (candidate.name == upper) {
      return true;
    }
  }
  if (named(kNumberPatterns, pattern) != pattern || upper == "GENERAL NUMBER") {
    return false;
  }
  bool date = false;
  bool quoted = false;
  for (std::size_t i = 0; i < upper.size(); ++i) {
    const char c = upper[i];
    if (c == '\\') {
      ++i;
    } else if (c == '"') {
      quoted = !quoted;
    } else if (!quoted) {
      if (c == '0' || c == '#') {
        return false;
      }
      date = date || std::string_view("CDMYHNSQW").find(c) != std::string_view::npos;
    }
  }
  return date;
}

}  // namespace orv::store::sql
