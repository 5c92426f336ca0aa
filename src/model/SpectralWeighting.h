// Means of a spectrum, weighted as the standards of glazing weight them.
#pragma once

#include <optional>
#include <span>

namespace orv {

/// What a spectral property is weighted with.
enum class Weighting {
  /// Global solar radiation at air mass 1.5 on a plane tilted by 37°, 300 to 2537 nm: ISO
  /// 9845-1:1992 (the table of ASTM E892).
  Solar,
  /// Standard illuminant D65 (ISO 11664-2) times the photopic luminous efficiency V(λ) (CIE
  /// 1924), 380 to 780 nm, as ISO 9050 and EN 410 weight visible light.
  Visual,
  /// The same solar radiation from 300 to 380 nm, the range of ultraviolet light in ISO 9050.
  Ultraviolet,
};

/// The weighted mean of a property given at wavelengths in nm, in ascending order. Between the
/// wavelengths the property is interpolated, beyond them it counts as at the nearest one. There
/// is no mean when the wavelengths cover less than 90 % of the weight.
std::optional<double> weightedMean(Weighting weighting, std::span<const double> wavelengths,
                                   std::span<const double> values);

}  // namespace orv
