#include "database/SpectralValidation.h"

#include "database/DatabaseErrors.h"

namespace orv::database {

namespace {

constexpr float kShortestNanometres = 50;
constexpr float kLongestMicrons = 100;

bool isFraction(float value) {
  return value >= 0 && value <= 1;
}

}  // namespace

void checkSpectrum(const SpectralData& spectrum) {
  const std::int32_t count = spectrum.count();
  for (std::int32_t i = 0; i < count; ++i) {
    RaiseUnless(spectrum.ConvertedWl(i, kNanometers) > kShortestNanometres, kInvalidSpectrum);
    RaiseUnless(spectrum.ConvertedWl(i, kMicrons) < kLongestMicrons, kInvalidSpectrum);
    RaiseUnless(isFraction(spectrum.Tf(i)), kInvalidSpectrum);
    RaiseUnless(isFraction(spectrum.Tb(i)), kInvalidSpectrum);
    RaiseUnless(isFraction(spectrum.Rf(i)), kInvalidSpectrum);
    RaiseUnless(isFraction(spectrum.Rb(i)), kInvalidSpectrum);
  }
}

void checkSubstrate(const SpectralData& spectrum, const GlazingData& substrate) {
  const auto& other = substrate.SpectralData();
  // A substrate that was not found has no spectrum at all, and so none at the same wavelengths.
  RaiseUnless(other && other->count() == spectrum.count(), kSubstrateWavelengthsDiffer);
  const std::int32_t count = spectrum.count();
  for (std::int32_t i = 0; i < count; ++i) {
    RaiseUnless(other->ConvertedWl(i, kNanometers) == spectrum.ConvertedWl(i, kNanometers),
                kSubstrateWavelengthsDiffer);
    RaiseUnless(isFraction(other->Tf(i)), kInvalidSubstrateSpectrum);
    RaiseUnless(isFraction(other->Rf(i)), kInvalidSubstrateSpectrum);
  }
}

}  // namespace orv::database
