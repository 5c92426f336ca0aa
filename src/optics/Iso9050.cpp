// ISO 9050:2003: global sun of ISO 9845-1, for visible and ultraviolet light the tables of weights
// that EN 410 has too.
#include <cmath>

#include "optics/Rules.h"

namespace orv::optics {

namespace {

/// How much an hour of light of this wavelength fades things, by the CIE; relative.
double damage(double nanometers) {
  return std::exp(-0.012 * nanometers);
}

}  // namespace

Rules iso9050Rules() {
  const auto sun = tables::kSolarIso9845;
  return {.means = {solarRule(trapezoids(sun, 300, 2500)),
                    visibleRule({tables::kVisibleIso9050.begin(), tables::kVisibleIso9050.end()}),
                    ultravioletRule(
                        {tables::kUltravioletIso9050.begin(), tables::kUltravioletIso9050.end()}),
                    {"damage", {"Tf_df"}, trapezoids(times(sun, damage), 300, 600)},
                    skinProtectionRule()},
          .observer = tables::kObserver1931,
          .colour = ColourRule::ofTable,
          .emissivity = EmissivityRule::en12898,
          .hasSolarGain = true,
          .hasColourRendering = false};
}

}  // namespace orv::optics
