// Dates as records hold them.
#pragma once

#include <chrono>
#include <optional>

namespace orv {

/// A day and a time of day as the calendar and the clock of the place show them, to the second.
/// Files and databases keep no time zone, so neither do the records.
using Date = std::chrono::local_seconds;

/// A date that may be empty.
using OptionalDate = std::optional<Date>;

}  // namespace orv
