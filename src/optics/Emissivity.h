// Emissivity from the spectrum in the infrared.
#pragma once

#include "optics/Spectrum.h"
#include "optics/Surfaces.h"
#include "optics/Weights.h"

namespace orv::optics {

/// How a standard gets emissivities.
enum class EmissivityRule {
  nfrc301,  ///< black body at 300 K; bare and coated surfaces have polynomials of their own
  en12898,  ///< black body at 283 K; one polynomial
};

struct Emissivity {
  std::optional<double> value;
  double covered = 0;      ///< part of the weight from 5 to 25 µm
  bool isStated = false;   ///< the record's, since the spectrum does not reach far enough
  bool isGuessed = false;  ///< whether the surface is coated is told by its emissivity
};

/// For the spectra of one grid of wavelengths.
class EmissivityMethod {
 public:
  EmissivityMethod(EmissivityRule rule, std::span<const double> wavelengths);

  /// Of the front with Tf and Rf, of the back with Tb and Rb. The radiation of the black body is
  /// taken at the wavelengths of the spectrum from 5 µm on, and weighs 1 - T - R by the
  /// trapezoidal rule; from that normal emissivity follows the hemispherical one.
  Emissivity of(const Surface& surface, std::span<const double> transmittance,
                std::span<const double> reflectance) const;

 private:
  double hemispherical(double normal, const Surface& surface, bool& isGuessed) const;

  EmissivityRule rule_;
  std::size_t first_ = 0;        ///< the first wavelength in the infrared
  std::vector<double> weights_;  ///< of the wavelengths from there on; they add up to 1
  double covered_ = 0;
};

}  // namespace orv::optics
