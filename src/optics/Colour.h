// Colour by the CIE.
#pragma once

#include <array>
#include <optional>

#include "optics/Coverage.h"
#include "optics/Weights.h"

namespace orv::optics {

/// Tristimulus values, Y of the light itself being 100, and the colour in CIELAB.
struct Colour {
  std::array<double, 3> XYZ;
  std::array<double, 3> Lab;
};

/// CIELAB of a colour seen beside a white. Both in one scale.
std::array<double, 3> labOf(const std::array<double, 3>& XYZ, const std::array<double, 3>& white);

/// Light times the matching functions x, y and z.
struct Light {
  std::array<Weights, 3> weights;   ///< of which X, Y and Z are the sums, but for a factor
  std::array<double, 3> sums = {};  ///< the white that they belong to, likewise
};

/// At which wavelengths the light is added up.
enum class ColourRule {
  ofTable,     ///< every 5 nm from 380 to 780 nm
  ofSpectrum,  ///< those of the spectrum; see below
};

/// The colour that light of illuminant D65 has behind a pane or after its reflection, for the
/// spectra of one grid of wavelengths.
///
/// `ofSpectrum`, the way of NFRC 300: light and matching functions are taken at the wavelengths of
/// the spectrum from 300 to 780 nm, the functions below 380 nm as at 380 nm. X is the mean of the
/// curve, weighted with light and x by the trapezoidal rule, times X of the white; Y and Z
/// likewise. The white is the plain sum of light times x over these wavelengths, Y being 100. A
/// spectrum with steps wider than 10 nm from 380 to 780 nm is taken by `ofTable`.
class ColourMethod {
 public:
  ColourMethod(std::span<const tables::ObserverPoint> observer, ColourRule rule,
               std::span<const double> wavelengths);

  Colour of(std::span<const double> curve) const;
  const std::array<double, 3>& white() const { return white_; }
  /// Of X, Y and Z.
  const std::array<Coverage, 3>& coverage() const { return coverage_; }

 private:
  void takeFrom(const Light& light, std::span<const double> wavelengths);

  std::array<GridWeights, 3> weights_;
  std::array<Coverage, 3> coverage_;
  std::array<double, 3> white_{};
};

}  // namespace orv::optics
