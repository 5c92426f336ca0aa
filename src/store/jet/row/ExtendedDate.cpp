#include "store/jet/row/ExtendedDate.h"

#include <charconv>
#include <string_view>

#include "store/StoreError.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kDayDigits = 19;
constexpr std::size_t kSecondDigits = 12;
constexpr std::size_t kFractionDigits = 7;
constexpr std::int64_t kFirstDay = 693'593;     // 30 December 1899, of which Date counts
constexpr std::int64_t kEndOfDays = 3'652'059;  // 1 January 10000
constexpr std::int64_t kSecondsOfDay = 86'400;

std::int64_t readNumber(ByteView bytes, std::size_t at, std::size_t digits, std::int64_t end) {
  const auto text = bytes.span(at, digits);
  const char* const first = reinterpret_cast<const char*>(text.data());
  std::int64_t number = 0;
  const auto [last, error] = std::from_chars(first, first + digits, number);
  if (error != std::errc() || last != first + digits || number < 0 || number >= end) {
    raiseDamaged(bytes.page(), "an extended date is none");
  }
  return number;
}

}  // namespace

Date decodeExtendedDate(ByteView bytes) {
  constexpr std::size_t kSeconds = kDayDigits + 1;
  constexpr std::size_t kFraction = kSeconds + kSecondDigits;
  const std::int64_t day = readNumber(bytes, 0, kDayDigits, kEndOfDays) - kFirstDay;
  const std::int64_t seconds = readNumber(bytes, kSeconds, kSecondDigits, kSecondsOfDay);
  const std::int64_t fraction = readNumber(bytes, kFraction, kFractionDigits, 10'000'000);
  const double time =
      (static_cast<double>(seconds) + static_cast<double>(fraction) / 1e7) / kSecondsOfDay;
  const auto days = static_cast<double>(day);
  return {day < 0 ? days - time : days + time};
}

}  // namespace orv::store::jet
