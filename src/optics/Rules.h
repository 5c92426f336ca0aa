// What each standard asks for.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "optics/Colour.h"
#include "optics/Emissivity.h"
#include "optics/Standard.h"
#include "optics/Weights.h"

namespace orv::optics {

/// Weighted means of the curves over one range.
struct MeanRule {
  const char* range;  ///< "solar"
  /// The names of the values of the curves in the order of kCurves; null where none is asked for.
  std::array<const char*, kCurves.size()> names;
  Weights weights;
  bool isReciprocal = false;  ///< the value is 1 over the mean
};

struct Rules {
  std::vector<MeanRule> means;  ///< the solar ones first
  std::span<const tables::ObserverPoint> observer;
  ColourRule colour;
  EmissivityRule emissivity;
  bool hasSolarGain;        ///< g
  bool hasColourRendering;  ///< Ra
};

const Rules& rulesOf(Standard standard);

// The standards, each in a file of its own.
Rules nfrc300Rules();
Rules en410Rules();
Rules iso9050Rules();

// What two of them have in common.
MeanRule visibleRule(Weights weights);
MeanRule ultravioletRule(Weights weights);
MeanRule solarRule(Weights weights);
/// 1 over the transmittance for the ultraviolet that reddens skin, from 280 to 400 nm.
MeanRule skinProtectionRule();

}  // namespace orv::optics
