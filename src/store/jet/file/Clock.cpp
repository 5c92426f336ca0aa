#include "store/jet/file/Clock.h"

#include <ctime>

namespace orv::store::jet {

Date localTime() {
  constexpr double kSecondsPerDay = 86400;
  constexpr double kDaysTo1970 = 25569;
  const std::time_t time = std::time(nullptr);
  std::tm local{};
  localtime_r(&time, &local);
  return {kDaysTo1970 + static_cast<double>(time + local.tm_gmtoff) / kSecondsPerDay};
}

}  // namespace orv::store::jet
