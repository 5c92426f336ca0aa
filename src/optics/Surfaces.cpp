#include "optics/Surfaces.h"

namespace orv::optics {

namespace {

Coating coatingOf(const GlazingData& pane, std::int32_t side) {
  switch (pane.CoatedSide()) {
    case kSideNotSet:
    case kUnknownSide:
      return pane.GlazingType() == kMonolithic ? Coating::bare : Coating::unknown;
    case kNeitherSide:
      return Coating::bare;
    case kBothSides:
      return Coating::coated;
    default:
      return pane.CoatedSide() == side ? Coating::coated : Coating::bare;
  }
}

std::optional<double> stated(double ofDatabase, float ofFile) {
  if (ofDatabase > 0) return ofDatabase;
  if (ofFile > 0) return static_cast<double>(ofFile);
  return std::nullopt;
}

}  // namespace

Surfaces surfacesOf(const GlazingData& pane) {
  return {.front = {coatingOf(pane, kFrontSide), stated(pane.ORV_Emissivity_front(), pane.ef())},
          .back = {coatingOf(pane, kBackSide), stated(pane.ORV_Emissivity_back(), pane.eb())}};
}

}  // namespace orv::optics
