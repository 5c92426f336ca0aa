// EN 410: its own tables of weights, colours of the 2° observer.
#include "optics/Rules.h"

namespace orv::optics {

namespace {

Weights copyOf(std::span<const tables::Point> table) {
  return {table.begin(), table.end()};
}

}  // namespace

Rules en410Rules() {
  return {.means = {solarRule(copyOf(tables::kSolarEn410)),
                    visibleRule(copyOf(tables::kVisibleIso9050)),
                    ultravioletRule(copyOf(tables::kUltravioletIso9050))},
          .observer = tables::kObserver1931,
          .colour = ColourRule::ofTable,
          .emissivity = EmissivityRule::en12898,
          .hasSolarGain = true,
          .hasColourRendering = true};
}

}  // namespace orv::optics
