// What records hold and no form of products has a place for: keys of our own, in an object of
// their own.
#pragma once

#include <span>

#include "productfile/Meaning.h"

namespace orv::productfile {

/// The object, in the product.
inline constexpr std::string_view kRecordObject = "/orv_record";
/// Within it: the unit of the record's wavelengths (`WavelengthUnitCode`), which is needed before
/// the spectrum is read; and the record of the substrate, a product.
inline constexpr std::string_view kWavelengthUnitKey = "/wavelength_unit";
inline constexpr std::string_view kSpectralPaneKey = "/spectral_pane";
inline constexpr std::string_view kSubstrateKey = "/substrate";

/// A key for every property of a record. Only those are written that the form's own keys would
/// not give back.
std::span<const Key> recordKeys();

}  // namespace orv::productfile
