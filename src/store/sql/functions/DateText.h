// Dates: their parts, and dates written as text.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orv::store::sql {

/// The parts of a date and time, rounded to the second.
struct Calendar {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
  int weekday;  ///< 1 Sunday to 7 Saturday
  int dayOfYear;
};

/// Raises kOverflow for a date outside of the years 100 to 9999.
Calendar toCalendar(double days);

/// Days of a date since 30 December 1899. Months and days outside of their range count on from
/// there. Raises kOverflow for a date outside of the years 100 to 9999.
double fromDate(int year, int month, int day);

/// A time of day as a fraction of a day.
double fromTime(int hour, int minute, int second);

/// A date and a time of day in one number (see store::Date for those before 1899-12-30).
double withTime(double date, double time);

int daysOfMonth(int year, int month);

/// The time of this moment, local.
double now();

/// The date that a text stands for, as Access takes it: "1/31/2020" (month first, unless that
/// cannot be), "2020-01-31", "31-Jan-2020", "January 31, 2020", each with or without a time such
/// as "14:05" or "2:05:30 PM", or a time alone. None when it is no date.
std::optional<double> parseDate(std::string_view text);

/// Month (1 to 12) and weekday (1 Sunday to 7 Saturday) names, in English.
std::string_view monthName(int month);
std::string_view weekdayName(int weekday);

}  // namespace orv::store::sql
