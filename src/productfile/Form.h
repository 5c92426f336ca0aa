// The forms in which products are handed over as JSON.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "productfile/Meaning.h"

namespace orv::productfile {

/// Where a row of a spectrum has its values, as pointers within the row.
struct RowKeys {
  std::string_view wavelength;
  std::string_view frontTransmittance;
  std::string_view backTransmittance;  ///< where it is not there, that of the front counts
  std::string_view frontReflectance;
  std::string_view backReflectance;
  std::string_view scattered;  ///< what else there may be, and is left out; empty where nothing
};

/// A form: which key has which meaning. Pointers are within the product unless told otherwise.
struct Form {
  /// The spectral data, by which the form is known.
  std::string_view data;
  /// Whether these are a list of blocks, one an angle of incidence, rather than rows.
  bool hasBlocks;
  RowKeys rows;
  /// The unit of the wavelengths; empty where the form has microns always.
  std::string_view wavelengthUnit;

  std::span<const Key> keys;

  /// A list of integrated values by several standards; the keys are within an entry.
  std::string_view summaries;
  std::string_view standard;
  std::span<const Key> integrated;
};

/// Pointers within a block.
inline constexpr std::string_view kBlockAngle = "/incidence_angle";
inline constexpr std::string_view kBlockRows = "/wavelength_data";

/// `spectral_data.spectral_data`
extern const Form kFlatForm;
/// `physical_properties.optical_properties.optical_data.angle_blocks`, which is also written
extern const Form kNewerForm;
/// `measured_data.spectral_data.angle_block`, of the checker of submissions
extern const Form kCheckerForm;

/// In the order in which they are looked for.
inline constexpr std::array kForms{&kFlatForm, &kNewerForm, &kCheckerForm};

}  // namespace orv::productfile
