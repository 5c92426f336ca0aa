// The directions of incidence of the spectra of a pane at an angle.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace orv::database {

/// To the retrieval, the rows of all directions as one spectrum.
inline constexpr std::int32_t kAnyDirection = 0;

/// Which of several directions, ascending, a copy takes, or takes the place of: `wanted` where it
/// is one of them, or else the first; any where the rows are one spectrum.
inline std::int32_t directionToUse(const std::vector<std::int32_t>& directions,
                                   std::int32_t wanted = kAnyDirection) {
  if (directions.size() < 2) return kAnyDirection;
  const bool isThere =
      wanted != kAnyDirection && std::ranges::find(directions, wanted) != directions.end();
  if (isThere) return wanted;
  return directions[directions[0] == kAnyDirection ? 1 : 0];
}

}  // namespace orv::database
