// Spectra as a table.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/SpectralData.h"

namespace orv::commands {

/// A spectrum and what its columns are called after; the name may be empty.
struct NamedSpectrum {
  std::string name;
  std::shared_ptr<const SpectralData> spectrum;
};

/// A line of headings with units, then a line for each wavelength, in nm, that any of the spectra
/// has: of each spectrum transmittance and reflectance from both sides, and empty cells where it
/// has no such wavelength. Wavelengths are taken to a thousandth of a nm; numbers have the digits
/// that they need, and a point. Lines end with CR LF; a cell that holds a comma, a quote or a line
/// end is quoted. Of two points of a spectrum at one wavelength the later stands in the next line.
std::string spectraCsv(const std::vector<NamedSpectrum>& spectra);

}  // namespace orv::commands
