// The rows of a product's spectrum.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/SpectralData.h"
#include "productfile/Form.h"

namespace orv::productfile {

/// The unit of a product's wavelengths, as the form has it or names it. Raises error 5 for a name
/// that is none.
std::int32_t wavelengthUnitOf(const Form& form, const Item& product);

/// Reads a list of rows whose wavelengths are in `unit` into a spectrum in `wanted`, in ascending
/// order. Rows that lack a value are left out. `notes` tells what was left out or put in order.
/// None where the list is empty. Raises error 5 for a row without a wavelength or with one that
/// cannot be in that unit, for values that are no fractions, and where no row has values.
std::shared_ptr<SpectralData> readSpectrum(const Item& rows, const RowKeys& keys, std::int32_t unit,
                                           std::int32_t wanted, std::vector<std::string>& notes);

}  // namespace orv::productfile
