#include "database/SpectralValidation.h"

#include <fmt/format.h>

#include <limits>

#include "database/DatabaseErrors.h"
#include "errors/Error.h"

namespace orv::database {

namespace {

constexpr float kShortestNanometres = 50;
constexpr float kLongestMicrons = 100;

/// More could be written, but retrieval counts the rows of a spectrum in 16 bits.
constexpr std::int32_t kMostPoints = std::numeric_limits<std::int16_t>::max();

/// Looks at one point of a spectrum, and says in the error's place which it is.
class Point {
 public:
  Point(const SpectralData& spectrum, std::int32_t index, const char* owner)
      : spectrum_(spectrum), index_(index), owner_(owner) {}

  void requireWavelengthInRange() const {
    const bool inRange = spectrum_.ConvertedWl(index_, kNanometers) > kShortestNanometres &&
                         spectrum_.ConvertedWl(index_, kMicrons) < kLongestMicrons;
    if (!inRange) {
      raise(kInvalidSpectrum, fmt::format("the wavelength is not between {} nm and {} µm",
                                          kShortestNanometres, kLongestMicrons));
    }
  }

  void requireFraction(float value, const char* name, std::int32_t number) const {
    if (value >= 0 && value <= 1) return;
    raise(number, fmt::format("the {} is {}, not from 0 to 1", name, value));
  }

  void requireSameWavelength(const SpectralData& other) const {
    const float wavelength = other.ConvertedWl(index_, kNanometers);
    if (wavelength == spectrum_.ConvertedWl(index_, kNanometers)) return;
    raise(kSubstrateWavelengthsDiffer, fmt::format("the substrate has {} nm there", wavelength));
  }

 private:
  [[noreturn]] void raise(std::int32_t number, const std::string& what) const {
    throw databaseError(number, fmt::format("{}point {}, {} nm: {}", owner_, index_ + 1,
                                            spectrum_.ConvertedWl(index_, kNanometers), what));
  }

  const SpectralData& spectrum_;
  std::int32_t index_;
  const char* owner_;
};

}  // namespace

void checkSpectrum(const SpectralData& spectrum) {
  const std::int32_t count = spectrum.count();
  if (count > kMostPoints) {
    throw Error(kOverflow, fmt::format("The spectrum has {} points; {} is the most that a database "
                                       "gives back. Leave out wavelengths.",
                                       count, kMostPoints));
  }
  for (std::int32_t i = 0; i < count; ++i) {
    const Point point(spectrum, i, "");
    point.requireWavelengthInRange();
    point.requireFraction(spectrum.Tf(i), "transmittance", kInvalidSpectrum);
    point.requireFraction(spectrum.Tb(i), "back transmittance", kInvalidSpectrum);
    point.requireFraction(spectrum.Rf(i), "front reflectance", kInvalidSpectrum);
    point.requireFraction(spectrum.Rb(i), "back reflectance", kInvalidSpectrum);
  }
}

void checkSubstrate(const SpectralData& spectrum, const GlazingData& substrate) {
  const auto& other = substrate.SpectralData();
  const std::int32_t count = spectrum.count();
  // A substrate that was not found has no spectrum at all, and so none at the same wavelengths.
  if (!other || other->count() != count) {
    throw databaseError(
        kSubstrateWavelengthsDiffer,
        fmt::format("{} points, the substrate has {}", count, other ? other->count() : 0));
  }
  for (std::int32_t i = 0; i < count; ++i) {
    Point(spectrum, i, "").requireSameWavelength(*other);
    const Point point(*other, i, "substrate, ");
    point.requireFraction(other->Tf(i), "transmittance", kInvalidSubstrateSpectrum);
    point.requireFraction(other->Rf(i), "front reflectance", kInvalidSubstrateSpectrum);
  }
}

}  // namespace orv::database
