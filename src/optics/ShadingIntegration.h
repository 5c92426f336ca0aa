#pragma once

#include "model/ShadingDataClass.h"

namespace orv::optics {

/// Fills what follows from the shading's spectrum: the optics of its surface, beam and scattered
/// part apart, and one integrated row at normal incidence with both parts together. Values are
/// weighted as by ISO 9050; one whose range the spectrum does not cover is 0. A record without a
/// spectrum stays as it is.
void calculateIntegratedValues(ShadingDataClass& shading);

}  // namespace orv::optics
