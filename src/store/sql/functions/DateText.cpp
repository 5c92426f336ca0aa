#include "store/sql/functions/DateText.h"

#include <array>
#include <cctype>
#include <cmath>
#include <string>
#include <vector>

#include "errors/Error.h"
#include "store/jet/file/Clock.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};
constexpr std::array<std::string_view, 7> kWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                       "Thursday", "Friday", "Saturday"};

/// Days from 30 December 1899 to 1 January of the year 1, negated.
constexpr std::int64_t kDaysBeforeEpoch = 693593;
constexpr double kFirstDay = -657434;  ///< 1 January 100
constexpr double kLastDay = 2958465;   ///< 31 December 9999

bool isLeapYear(int year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

/// Days from 1 January of the year 1 to that of `year`.
std::int64_t daysBeforeYear(int year) {
  const std::int64_t before = year - 1;
  return before * 365 + before / 4 - before / 100 + before / 400;
}

struct DateToken {
  std::string text;  ///< digits, letters (in upper case), or one mark
  bool isNumber() const { return std::isdigit(static_cast<unsigned char>(text[0])) != 0; }
  bool isWord() const { return std::isalpha(static_cast<unsigned char>(text[0])) != 0; }
  int number() const { return text.size() > 6 ? -1 : std::stoi(text); }
};

std::vector<DateToken> dateTokens(std::string_view text) {
  std::vector<DateToken> tokens;
  std::size_t at = 0;
  const auto run = [&](int (*is)(int)) {
    const std::size_t start = at;
    while (at < text.size() && is(static_cast<unsigned char>(text[at])) != 0) {
      ++at;
    }
    return upperWord(text.substr(start, at - start));
  };
  while (at < text.size()) {
    const auto c = static_cast<unsigned char>(text[at]);
    if (std::isspace(c) != 0) {
      ++at;
    } else if (std::isdigit(c) != 0) {
      tokens.push_back({run(std::isdigit)});
    } else if (std::isalpha(c) != 0) {
      tokens.push_back({run(std::isalpha)});
    } else {
      tokens.push_back({std::string(1, text[at++])});
    }
  }
  return tokens;
}

/// Takes a time of day out of the tokens. None when there is a malformed one; `found` tells
/// whether there was any.
std::optional<double> takeTime(std::vector<DateToken>& tokens, bool& found) {
  const auto isHalf = [&](std::size_t i) {
    return i < tokens.size() && (tokens[i].text == "AM" || tokens[i].text == "PM");
  };
  for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
    const bool colon = tokens[i].isNumber() && tokens[i + 1].text == ":";
    if (!colon && !(tokens[i].isNumber() && isHalf(i + 1))) {
      continue;
    }
    found = true;
    std::array<int, 3> parts = {tokens[i].number(), 0, 0};
    std::size_t end = i + 1;
    for (std::size_t part = 1; part < 3 && end + 1 < tokens.size() && tokens[end].text == ":" &&
                               tokens[end + 1].isNumber();
         ++part, end += 2) {
      parts[part] = tokens[end + 1].number();
    }
    if (isHalf(end)) {
      if (parts[0] < 1 || parts[0] > 12) {
        return std::nullopt;
      }
      parts[0] = parts[0] % 12 + (tokens[end].text == "PM" ? 12 : 0);
      ++end;
    }
    if (parts[0] < 0 || parts[0] > 23 || parts[1] < 0 || parts[1] > 59 || parts[2] < 0 ||
        parts[2] > 59) {
      return std::nullopt;
    }
    tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(i),
                 tokens.begin() + static_cast<std::ptrdiff_t>(end));
    if (i > 0 && tokens[i - 1].text == "T") {
      tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(i) - 1);
    }
    return fromTime(parts[0], parts[1], parts[2]);
  }
  return 0.0;
}

int monthFromName(const std::string& upper) {
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    const std::string name = upperWord(kMonths[i]);
    if (upper == name || (upper.size() >= 3 && name.starts_with(upper))) {
      return static_cast<int>(i) + 1;
    }
  }
  return 0;
}

int fullYear(const DateToken& token) {
  const int year = token.number();
  if (token.text.size() > 2) {
    return year;
  }
  return year < 30 ? 2000 + year : 1900 + year;
}

std::optional<double> checkedDate(int year, int month, int day) {
  if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 ||
      day > daysOfMonth(year, month)) {
    return std::nullopt;
  }
  return fromDate(year, month, day);
}

std::optional<double> dateOfNamedMonth(const std::vector<DateToken>& numbers, int month) {
  if (numbers.size() == 1) {
    return checkedDate(toCalendar(now()).year, month, numbers[0].number());
  }
  if (numbers.size() != 2) {
    return std::nullopt;
  }
  const bool yearFirst = numbers[0].text.size() > 2;
  return checkedDate(fullYear(numbers[yearFirst ? 0 : 1]), month,
                     numbers[yearFirst ? 1 : 0].number());
}

std::optional<double> dateOfNumbers(const std::vector<DateToken>& numbers) {
  if (numbers.size() == 3 && numbers[0].text.size() > 2) {
    return checkedDate(numbers[0].number(), numbers[1].number(), numbers[2].number());
  }
  if (numbers.size() != 2 && numbers.size() != 3) {
    return std::nullopt;
  }
  int month = numbers[0].number();
  int day = numbers[1].number();
  if (month > 12 && day <= 12) {
    std::swap(month, day);
  }
  const int year = numbers.size() == 3 ? fullYear(numbers[2]) : toCalendar(now()).year;
  return checkedDate(year, month, day);
}

}  // namespace

int daysOfMonth(int year, int month) {
  constexpr std::array kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays.at(static_cast<std::size_t>(month - 1)) + (month == 2 && isLeapYear(year) ? 1 : 0);
}

Calendar toCalendar(double days) {
  if (!(days > kFirstDay - 1 && days < kLastDay + 1)) {
    throw Error(kOverflow, "A date is not within the years 100 to 9999");
  }
  const double date = std::trunc(days);
  auto seconds = std::llround(std::fabs(days - date) * 86400);
  std::int64_t day = static_cast<std::int64_t>(date) + seconds / 86400;
  seconds %= 86400;

  const int weekday = static_cast<int>(((day + 6) % 7 + 7) % 7) + 1;
  day += kDaysBeforeEpoch;
  int year = static_cast<int>(day / 366);  // at most one too few for each of a leap year
  while (daysBeforeYear(year + 1) <= day) {
    ++year;
  }
  day -= daysBeforeYear(year);
  const int dayOfYear = static_cast<int>(day) + 1;
  int month = 1;
  while (day >= daysOfMonth(year, month)) {
    day -= daysOfMonth(year, month++);
  }
  return {.year = year,
          .month = month,
          .day = static_cast<int>(day) + 1,
          .hour = static_cast<int>(seconds / 3600),
          .minute = static_cast<int>(seconds / 60 % 60),
          .second = static_cast<int>(seconds % 60),
          .weekday = weekday,
          .dayOfYear = dayOfYear};
}

double fromDate(int year, int month, int day) {
  const std::int64_t months = static_cast<std::int64_t>(year) * 12 + month - 1;
  const auto civilYear = static_cast<int>(months / 12);
  if (civilYear < 1) {
    throw Error(kOverflow, "A date is not within the years 100 to 9999");
  }
  std::int64_t days = daysBeforeYear(civilYear) - kDaysBeforeEpoch + day - 1;
  for (int m = 1; m <= static_cast<int>(months % 12); ++m) {
    days += daysOfMonth(civilYear, m);
  }
  const auto result = static_cast<double>(days);
  if (result < kFirstDay || result > kLastDay) {
    throw Error(kOverflow, "A date is not within the years 100 to 9999");
  }
  return result;
}

double fromTime(int hour, int minute, int second) {
  return (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
}

double withTime(double date, double time) {
  return date < 0 ? date - time : date + time;
}

double now() {
  return jet::localTime().days;
}

std::optional<double> parseDate(std::string_view text) {
  std::vector<DateToken> tokens = dateTokens(text);
  bool hasTime = false;
  const std::optional<double> time = takeTime(tokens, hasTime);
  if (!time || (tokens.empty() && !hasTime)) {
    return std::nullopt;
  }
  if (tokens.empty()) {
    return time;
  }
  int month = 0;
  std::vector<DateToken> numbers;
  for (const DateToken& token : tokens) {
    if (token.isNumber()) {
      numbers.push_back(token);
    } else if (token.isWord() && month == 0) {
      month = monthFromName(token.text);
      if (month == 0) {
        return std::nullopt;
      }
    } else if (token.text != "/" && token.text != "-" && token.text != ",") {
      return std::nullopt;
    }
  }
  const std::optional<double> date =
      month > 0 ? dateOfNamedMonth(numbers, month) : dateOfNumbers(numbers);
  return date ? std::optional(withTime(*date, *time)) : std::nullopt;
}

std::string_view monthName(int month) {
  return kMonths.at(static_cast<std::size_t>(month - 1));
}

std::string_view weekdayName(int weekday) {
  return kWeekdays.at(static_cast<std::size_t>(weekday - 1));
}

}  // namespace orv::store::sql
