#include "optics/Emissivity.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "optics/Coverage.h"

namespace orv::optics {

namespace {

constexpr double kFirstInfrared = 5000;             // nm
constexpr double kLastMeasured = 25000;             // nm; as far as spectrometers usually go
constexpr double kRounding = 1e-6;                  // nm
constexpr double kSecondRadiation = 1.438776877e7;  // nm·K
/// No bare glass emits as little as this.
constexpr double kLeastOfGlass = 0.7;

/// Of the black body that a standard weighs with; K.
constexpr double temperature(EmissivityRule rule) {
  return rule == EmissivityRule::nfrc301 ? 300 : 283;
}

/// Radiation of a black body, relative, by Planck.
double blackBody(double wavelength, double kelvin) {
  const double part = kFirstInfrared / wavelength;
  return part * part * part * part * part / std::expm1(kSecondRadiation / (wavelength * kelvin));
}

Weights blackBodyWeightsAnew(double kelvin) {
  constexpr double kStep = 500;
  Weights density;
  for (double at = kFirstInfrared; at <= kLastMeasured; at += kStep) {
    density.push_back({at, blackBody(at, kelvin)});
  }
  return trapezoids(density, kFirstInfrared, kLastMeasured);
}

const Weights& blackBodyWeights(EmissivityRule rule) {
  static const Weights kNfrc301 = blackBodyWeightsAnew(temperature(EmissivityRule::nfrc301));
  static const Weights kEn12898 = blackBodyWeightsAnew(temperature(EmissivityRule::en12898));
  return rule == EmissivityRule::nfrc301 ? kNfrc301 : kEn12898;
}

/// Where the wavelengths lie between 5 and 25 µm.
double partCovered(std::span<const double> wavelengths, EmissivityRule rule) {
  if (wavelengths.size() < 2) return 0;
  return coverageOf(blackBodyWeights(rule), wavelengths).reached;
}

double polynomial(double x, std::span<const double> factors) {
  double sum = 0;
  for (auto factor = factors.rbegin(); factor != factors.rend(); ++factor) sum = sum * x + *factor;
  return sum * x;
}

}  // namespace

EmissivityMethod::EmissivityMethod(EmissivityRule rule, std::span<const double> wavelengths)
    : rule_(rule) {
  first_ = static_cast<std::size_t>(
      std::ranges::lower_bound(wavelengths, kFirstInfrared - kRounding) - wavelengths.begin());
  const auto infrared = wavelengths.subspan(first_);
  covered_ = partCovered(infrared, rule);
  if (covered_ < kLeastCovered) return;
  const double kelvin = temperature(rule);
  Weights density;
  for (const double at : infrared) density.push_back({at, blackBody(at, kelvin)});
  const Weights weights = trapezoids(density, infrared.front(), infrared.back());
  const double whole =
      std::accumulate(weights.begin(), weights.end(), 0.0,
                      [](double sum, const tables::Point& point) { return sum + point.value; });
  for (const tables::Point& point : weights) weights_.push_back(point.value / whole);
}

Emissivity EmissivityMethod::of(const Surface& surface, std::span<const double> transmittance,
                                std::span<const double> reflectance) const {
  if (weights_.empty()) {
    return {.value = surface.emissivity, .covered = covered_, .isStated = true};
  }
  double normal = 0;
  for (std::size_t i = 0; i < weights_.size(); ++i) {
    normal += weights_[i] * (1 - transmittance[first_ + i] - reflectance[first_ + i]);
  }
  Emissivity result{.value = {}, .covered = covered_};
  result.value = hemispherical(normal, surface, result.isGuessed);
  return result;
}

double EmissivityMethod::hemispherical(double normal, const Surface& surface,
                                       bool& isGuessed) const {
  constexpr double kCoated[] = {1.3217, -1.8766, 4.6586, -5.8349, 2.7406};
  constexpr double kBare[] = {0.1569, 3.7669, -5.4398, 2.4733};
  constexpr double kEn12898[] = {1.1887, -0.4967, 0.2452};
  if (rule_ == EmissivityRule::en12898) return polynomial(normal, kEn12898);
  isGuessed = surface.coating == Coating::unknown;
  const bool isCoated = isGuessed ? normal < kLeastOfGlass : surface.coating == Coating::coated;
  return isCoated ? polynomial(normal, kCoated) : polynomial(normal, kBare);
}

}  // namespace orv::optics
