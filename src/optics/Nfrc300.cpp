// NFRC 300 (2003): direct sun of ASTM E891, colours of the 10° observer of ASTM E308.
#include <cmath>

#include "optics/Rules.h"

namespace orv::optics {

namespace {

/// How much an hour of light of this wavelength fades things, by the CIE.
double damage(double nanometers) {
  return std::exp(3.6 - 0.012 * nanometers);
}

Weights visibleWeights() {
  const Weights density = times(tables::kLuminousEfficiencyE308,
                                [](double at) { return valueAt(tables::kIlluminantD65, at); });
  return trapezoids(density, 380, 780);
}

}  // namespace

Rules nfrc300Rules() {
  const auto sun = tables::kSolarAstmE891;
  return {.means = {solarRule(trapezoids(sun, 300, 2500)),
                    visibleRule(visibleWeights()),
                    ultravioletRule(trapezoids(sun, 310, 380)),
                    {"damage",
                     {"Tf_dw", "Rf_dw", "Tb_dw", "Rb_dw"},
                     trapezoids(times(sun, damage), 300, 700)},
                    skinProtectionRule()},
          .observer = tables::kObserver1964,
          .colour = ColourRule::ofSpectrum,
          .emissivity = EmissivityRule::nfrc301,
          .hasSolarGain = false,
          .hasColourRendering = false};
}

}  // namespace orv::optics
