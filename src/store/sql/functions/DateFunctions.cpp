// Functions of dates: DateAdd, DateDiff, DatePart, DateSerial and their kin.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "errors/Error.h"
#include "store/sql/functions/Arguments.h"
#include "store/sql/functions/DateText.h"
#include "store/sql/functions/Functions.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

double dayOf(double date) {
  return std::trunc(date);
}
double timeOf(double date) {
  return std::fabs(date - std::trunc(date));
}

template <int Calendar::*part>
void partOf(const Arguments& a, Result& result) {
  result.whole(toCalendar(a.date(0)).*part);
}

void today(const Arguments&, Result& result) {
  result.number(dayOf(now()));
}
void timeNow(const Arguments&, Result& result) {
  result.number(timeOf(now()));
}
void thisMoment(const Arguments&, Result& result) {
  result.number(now());
}
void dateValue(const Arguments& a, Result& result) {
  result.number(dayOf(a.date(0)));
}
void timeValue(const Arguments& a, Result& result) {
  result.number(timeOf(a.date(0)));
}

void dateSerial(const Arguments& a, Result& result) {
  int year = a.whole(0);
  if (year >= 0 && year < 100) {
    year += year < 30 ? 2000 : 1900;
  }
  result.number(fromDate(year, a.whole(1), a.whole(2)));
}

void timeSerial(const Arguments& a, Result& result) {
  result.number(fromTime(a.whole(0), a.whole(1), a.whole(2)));
}

/// The day of the week, 1 for the first; `first` is 1 for Sunday to 7 for Saturday, 0 for Sunday.
int weekdayFrom(double date, std::int32_t first) {
  if (first < 0 || first > 7) {
    failCall("a first day of the week is a number from 1 (Sunday) to 7");
  }
  const int start = first == 0 ? 1 : first;
  return (toCalendar(dayOf(date)).weekday - start + 7) % 7 + 1;
}

void weekday(const Arguments& a, Result& result) {
  result.whole(weekdayFrom(a.date(0), a.wholeOr(1, 1)));
}

void nameOfMonth(const Arguments& a, Result& result) {
  const std::int32_t month = a.whole(0);
  if (month < 1 || month > 12) {
    failCall("MonthName takes 1 to 12");
  }
  result.text(monthName(month).substr(0, a.wholeOr(1, 0) != 0 ? 3 : std::string_view::npos));
}

void nameOfWeekday(const Arguments& a, Result& result) {
  const std::int32_t day = a.whole(0);
  const std::int32_t first = std::max(a.wholeOr(2, 1), 1);
  if (day < 1 || day > 7 || first > 7) {
    failCall("WeekdayName takes 1 to 7");
  }
  const std::string_view name = weekdayName((day + first - 2) % 7 + 1);
  result.text(name.substr(0, a.wholeOr(1, 0) != 0 ? 3 : std::string_view::npos));
}

std::string interval(const Arguments& a) {
  const std::string name = upperWord(a.text(0));
  constexpr std::string_view kIntervals[] = {"YYYY", "Q", "M", "Y", "D", "W", "WW", "H", "N", "S"};
  if (std::find(std::begin(kIntervals), std::end(kIntervals), name) == std::end(kIntervals)) {
    failCall("an interval is one of yyyy, q, m, y, d, w, ww, h, n and s");
  }
  return name;
}

double addMonths(double date, double months) {
  if (std::fabs(months) > 200000) {
    failCall("the date is not within the years 100 to 9999");
  }
  const Calendar start = toCalendar(dayOf(date));
  const double first = fromDate(start.year, start.month + static_cast<int>(months), 1);
  const Calendar target = toCalendar(first);
  const int day = std::min(start.day, daysOfMonth(target.year, target.month));
  return withTime(first + day - 1, timeOf(date));
}

/// Seconds since 30 December 1899, so that times before it count on too.
double secondsOf(double date) {
  return std::round((dayOf(date) + timeOf(date)) * 86400);
}

double addSeconds(double date, double seconds) {
  const double total = secondsOf(date) + seconds;
  const double day = std::floor(total / 86400);
  return withTime(day, (total - day * 86400) / 86400);
}

/// DateAdd(interval, number, date)
void dateAdd(const Arguments& a, Result& result) {
  const std::string unit = interval(a);
  const double number = std::trunc(a.number(1));
  const double date = a.date(2);
  double sum = 0;
  if (unit == "YYYY" || unit == "Q" || unit == "M") {
    sum = addMonths(date, number * (unit == "YYYY" ? 12 : unit == "Q" ? 3 : 1));
  } else if (unit == "H" || unit == "N" || unit == "S") {
    sum = addSeconds(date, number * (unit == "H" ? 3600 : unit == "N" ? 60 : 1));
  } else {
    sum = withTime(dayOf(date) + number * (unit == "WW" ? 7 : 1), timeOf(date));
  }
  toCalendar(sum);
  result.number(sum);
}

/// The day on which the week of `date` begins.
double weekStart(double date, std::int32_t first) {
  return dayOf(date) - weekdayFrom(date, first) + 1;
}

/// DateDiff(interval, from, to [, first day of the week [, first week]]): boundaries crossed.
void dateDiff(const Arguments& a, Result& result) {
  const std::string unit = interval(a);
  const double from = a.date(1);
  const double to = a.date(2);
  const Calendar first = toCalendar(from);
  const Calendar last = toCalendar(to);
  const auto months = [](const Calendar& c) { return c.year * 12 + c.month - 1; };
  double difference = 0;
  if (unit == "YYYY") {
    difference = last.year - first.year;
  } else if (unit == "Q") {
    difference = months(last) / 3 - months(first) / 3;
  } else if (unit == "M") {
    difference = months(last) - months(first);
  } else if (unit == "WW") {
    const std::int32_t start = a.wholeOr(3, 1);
    difference = (weekStart(to, start) - weekStart(from, start)) / 7;
  } else if (unit == "W") {
    difference = std::trunc((dayOf(to) - dayOf(from)) / 7);
  } else if (unit == "H" || unit == "N" || unit == "S") {
    const double size = unit == "H" ? 3600 : unit == "N" ? 60 : 1;
    difference = std::floor(secondsOf(to) / size) - std::floor(secondsOf(from) / size);
  } else {
    difference = dayOf(to) - dayOf(from);
  }
  result.whole(static_cast<std::int64_t>(difference));
}

/// The week of the year. `firstWeek`: 1 the week of 1 January, 2 the first of at least four days,
/// 3 the first whole one.
int weekOfYear(double date, std::int32_t firstDay, std::int32_t firstWeek) {
  const auto startOfYear = [&](int year) {
    const double january = fromDate(year, 1, 1);
    const double start = weekStart(january, firstDay);
    const double daysInYear = start + 7 - january;
    const bool counts = firstWeek <= 1 || daysInYear >= (firstWeek == 2 ? 4 : 7);
    return counts ? start : start + 7;
  };
  const int year = toCalendar(dayOf(date)).year;
  double start = startOfYear(year);
  if (dayOf(date) < start) {
    start = startOfYear(year - 1);
  } else if (firstWeek == 2 && dayOf(date) >= startOfYear(year + 1)) {
    start = startOfYear(year + 1);
  }
  return static_cast<int>((dayOf(date) - start) / 7) + 1;
}

/// DatePart(interval, date [, first day of the week [, first week]])
void datePart(const Arguments& a, Result& result) {
  const std::string unit = interval(a);
  const double date = a.date(1);
  const Calendar c = toCalendar(date);
  const std::int32_t first = a.wholeOr(2, 1);
  result.whole(unit == "YYYY" ? c.year
               : unit == "Q"  ? (c.month + 2) / 3
               : unit == "M"  ? c.month
               : unit == "Y"  ? c.dayOfYear
               : unit == "D"  ? c.day
               : unit == "W"  ? weekdayFrom(date, first)
               : unit == "WW" ? weekOfYear(date, first, a.wholeOr(3, 1))
               : unit == "H"  ? c.hour
               : unit == "N"  ? c.minute
                              : c.second);
}

constexpr FunctionDefinition kDateFunctions[] = {
    {"jet_date", today},
    {"jet_time", timeNow},
    {"jet_now", thisMoment},
    {"jet_datevalue", dateValue},
    {"jet_timevalue", timeValue},
    {"jet_dateserial", dateSerial},
    {"jet_timeserial", timeSerial},
    {"jet_year", partOf<&Calendar::year>},
    {"jet_month", partOf<&Calendar::month>},
    {"jet_day", partOf<&Calendar::day>},
    {"jet_hour", partOf<&Calendar::hour>},
    {"jet_minute", partOf<&Calendar::minute>},
    {"jet_second", partOf<&Calendar::second>},
    {"jet_weekday", weekday},
    {"jet_monthname", nameOfMonth},
    {"jet_weekdayname", nameOfWeekday},
    {"jet_dateadd", dateAdd},
    {"jet_datediff", dateDiff},
    {"jet_datepart", datePart},
};

}  // namespace

void registerDateFunctions(sqlite3* db, CallbackFailure& failure) {
  for (const FunctionDefinition& definition : kDateFunctions) {
    registerFunction(db, definition, failure);
  }
}

}  // namespace orv::store::sql
