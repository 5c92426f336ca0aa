#include "optics/Rules.h"

namespace orv::optics {

MeanRule solarRule(Weights weights) {
  return {"solar", {"Tf_sol", "Rf_sol", "Tb_sol", "Rb_sol"}, std::move(weights)};
}

MeanRule visibleRule(Weights weights) {
  return {"visible", {"Tf_vis", "Rf_vis", "Tb_vis", "Rb_vis"}, std::move(weights)};
}

MeanRule ultravioletRule(Weights weights) {
  return {"ultraviolet", {"Tf_uv", "Rf_uv", "Tb_uv", "Rb_uv"}, std::move(weights)};
}

MeanRule skinProtectionRule() {
  const Weights density = times(tables::kUltravioletSayre,
                                [](double at) { return valueAt(tables::kErythemalMcKinlay, at); });
  return {"skin protection", {"Tf_spf"}, trapezoids(density, 280, 400), true};
}

const Rules& rulesOf(Standard standard) {
  static const Rules kNfrc300 = nfrc300Rules();
  static const Rules kEn410 = en410Rules();
  static const Rules kIso9050 = iso9050Rules();
  switch (standard) {
    case Standard::nfrc300:
      return kNfrc300;
    case Standard::en410:
      return kEn410;
    case Standard::iso9050:
      break;
  }
  return kIso9050;
}

}  // namespace orv::optics
