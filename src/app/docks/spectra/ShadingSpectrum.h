// The spectrum of a shading for the plot.
#pragma once

#include <memory>

#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"

namespace orv::app {

/// A pane with the names of a shading and its spectrum: the light that goes on as a beam and the
/// scattered light, together. Transmittance is that from outdoors, front is the outdoor side.
std::shared_ptr<GlazingData> paneOf(const ShadingDataClass& shading);

}  // namespace orv::app
