// The values of a pane by a standard.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "optics/Spectrum.h"
#include "optics/Standard.h"
#include "optics/Surfaces.h"

namespace orv::optics {

/// One value, and what it rests on.
struct Value {
  std::string_view name;  ///< one of kValueNames
  std::optional<double> value = {};
  double covered = 0;                     ///< part of the weight that the spectrum covers, 0 to 1
  std::string reason = {};                ///< why there is no value; empty when there is one
  std::vector<std::string> remarks = {};  ///< what is to be known of it
};

/// All values, in the order of columns. Tf and Tb are the transmittances of light from the front
/// and from the back, Rf and Rb the reflectances of the two sides; X to b are colours in
/// transmission, those with Rf_ and Rb_ in reflection.
inline constexpr std::string_view kValueNames[] = {
    "Tf_sol", "Rf_sol", "Tb_sol", "Rb_sol", "Tf_vis", "Rf_vis", "Tb_vis", "Rb_vis",
    "Tf_uv",  "Rf_uv",  "Tb_uv",  "Rb_uv",  "Tf_dw",  "Rf_dw",  "Tb_dw",  "Rb_dw",
    "Tf_df",  "Tf_spf", "ef",     "eb",     "g",      "Ra",     "X",      "Y",
    "Z",      "L",      "a",      "b",      "Rf_X",   "Rf_Y",   "Rf_Z",   "Rf_L",
    "Rf_a",   "Rf_b",   "Rb_X",   "Rb_Y",   "Rb_Z",   "Rb_L",   "Rb_a",   "Rb_b"};

/// Whether a value is part of a colour in reflection.
constexpr bool isOfReflectedColour(std::string_view name) {
  return name.size() == 4 && name[2] == '_';
}

struct Integration {
  Standard standard;
  std::vector<Value> values;         ///< those that the standard has, in the order of kValueNames
  std::vector<std::string> remarks;  ///< what is unusual about the spectrum
  /// Whether values are missing because there is no spectrum, or too little of it.
  bool lacksSpectrum = false;

  /// Null for a value that the standard does not have.
  const Value* find(std::string_view name) const;
  /// None where there is no such value, too.
  std::optional<double> operator[](std::string_view name) const;
  /// The reasons of missing values, each once.
  std::vector<std::string> reasons() const;
};

/// Integrates spectra by one standard. What depends on the wavelengths only is prepared once, and
/// kept for the few grids of wavelengths that spectra had last.
class Integrator {
 public:
  explicit Integrator(Standard standard);
  ~Integrator();
  Integrator(Integrator&&) noexcept;
  Integrator& operator=(Integrator&&) noexcept;

  Standard standard() const { return standard_; }

  /// The values of a pane with its spectrum as it stands, at whatever angle that is; none, with
  /// that reason, where the spectrum is of several angles.
  Integration integrate(const GlazingData& pane);
  Integration integrate(const Spectrum& spectrum, const Surfaces& surfaces);

 private:
  class Grid;
  const Grid& gridOf(const std::vector<double>& wavelengths);

  Standard standard_;
  std::vector<std::unique_ptr<Grid>> grids_;  ///< the one used last at the end
};

/// The names of the values that a standard has, in the order of kValueNames.
std::vector<std::string_view> valueNames(Standard standard);

/// Puts the solar, visible and ultraviolet values, where there are any, into the record, with the
/// name of the standard. Returns how many there were.
int store(const Integration& integration, GlazingData& pane);
/// The same only where the record has 0 or no values. It keeps the name of the standard of what it
/// has.
int storeMissing(const Integration& integration, GlazingData& pane);

}  // namespace orv::optics
