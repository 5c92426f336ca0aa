#include "optics/Surfaces.h"

#include <array>
#include <charconv>

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

/// The decimal number that a 32-bit float stands for: 0.84, not 0.8399999737739563. Any other
/// number stays as it is.
double asWritten(double value) {
  const auto single = static_cast<float>(value);
  if (single != value) return value;
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), single).ptr;
  std::from_chars(digits.data(), end, value);
  return value;
}

std::optional<double> stated(double ofDatabase, float ofFile) {
  if (ofDatabase > 0) return asWritten(ofDatabase);
  if (ofFile > 0) return asWritten(ofFile);
  return std::nullopt;
}

}  // namespace

Surfaces surfacesOf(const GlazingData& pane) {
  return {.front = {coatingOf(pane, kFrontSide), stated(pane.ORV_Emissivity_front(), pane.ef())},
          .back = {coatingOf(pane, kBackSide), stated(pane.ORV_Emissivity_back(), pane.eb())}};
}

}  // namespace orv::optics
