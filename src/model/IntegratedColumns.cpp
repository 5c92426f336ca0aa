#include "model/IntegratedColumns.h"

#include <algorithm>

namespace orv {

bool lacksIntegratedValues(const GlazingData& pane) {
  return std::ranges::all_of(kIntegratedColumns,
                             [&](const auto& each) { return (pane.*each.pane)() == 0; });
}

bool lacksIntegratedValues(const GlazingData& pane, Band band) {
  return std::ranges::all_of(kIntegratedColumns, [&](const auto& each) {
    return each.band != band || (pane.*each.pane)() == 0;
  });
}

}  // namespace orv
