// The checks that a spectrum passes before it is written.
#pragma once

#include "model/GlazingData.h"

namespace orv::database {

/// Raises kInvalidSpectrum unless every wavelength is above 50 nanometres and below 100 microns
/// and every transmittance and reflectance is from 0 to 1; the error's place names the point, its
/// wavelength and the value. Raises kOverflow for more points than can be read again.
void checkSpectrum(const SpectralData& spectrum);

/// Checks the substrate of a pane, which has one, against the pane's spectrum. Raises
/// kSubstrateWavelengthsDiffer unless it has exactly the same wavelengths, and
/// kInvalidSubstrateSpectrum unless its front values are from 0 to 1.
void checkSubstrate(const SpectralData& spectrum, const GlazingData& substrate);

}  // namespace orv::database
