#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "model/Codes.h"
#include "model/Property.h"

namespace orv {

/// The measured spectrum of a pane: for each wavelength the transmittance and the reflectance,
/// from the front and from the back, as fractions. Points are in ascending order of wavelength.
///
/// The accessors of single points do not check the position; callers keep within 0..count - 1.
/// The setters raise error 5, and keep the old value, for one that is negative or no number.
class SpectralData {
 public:
  /// The unit of the wavelengths; setting it does not convert them.
  Property<std::int32_t> WavelengthUnit{kMicrons};
  /// Whether the points are of several angles of incidence, which their source does not tell
  /// apart.
  Property<bool> MixesAngles;

  /// Sizes the arrays for the positions 0..lastIndex, all values 0. Raises error 9 when
  /// `lastIndex` is negative.
  void Allocate(std::int32_t lastIndex);

  /// Number of points. Raises error 9 before the first `Allocate`.
  std::int32_t count() const;

  float wl(std::int32_t index) const { return wl_[index]; }  ///< wavelength
  float Tf(std::int32_t index) const { return tf_[index]; }  ///< transmittance, front incidence
  float Tb(std::int32_t index) const { return tb_[index]; }  ///< transmittance, back incidence
  float Rf(std::int32_t index) const { return rf_[index]; }  ///< reflectance of the front
  float Rb(std::int32_t index) const { return rb_[index]; }  ///< reflectance of the back

  void wl(std::int32_t index, float value) { set(wl_, index, value); }
  void Tf(std::int32_t index, float value) { set(tf_, index, value); }
  void Tb(std::int32_t index, float value) { set(tb_, index, value); }
  void Rf(std::int32_t index, float value) { set(rf_, index, value); }
  void Rb(std::int32_t index, float value) { set(rb_, index, value); }

  /// The wavelength at a position in the unit asked for; as stored when either unit is neither
  /// microns nor nanometres. Raises error 6 when the result does not fit.
  float ConvertedWl(std::int32_t index, std::int32_t unit) const;

  /// Copies all points into arrays of at least `count` elements each, wavelengths in `unit`.
  void GetDataArrays(std::int32_t unit, std::span<float> wl, std::span<float> Tf,
                     std::span<float> Tb, std::span<float> Rf, std::span<float> Rb) const;
  void GetDataArraysAsDoubles(std::int32_t unit, std::span<double> wl, std::span<double> Tf,
                              std::span<double> Tb, std::span<double> Rf,
                              std::span<double> Rb) const;

  /// Whether the last point lies at 5 microns or beyond.
  bool HasIRData() const;

  std::shared_ptr<SpectralData> ShallowClone() const;

 private:
  static void set(std::vector<float>& values, std::int32_t index, float value);
  double convertedWl(std::int32_t index, std::int32_t unit) const;

  std::vector<float> wl_;
  std::vector<float> tf_;
  std::vector<float> tb_;
  std::vector<float> rf_;
  std::vector<float> rb_;
};

}  // namespace orv
