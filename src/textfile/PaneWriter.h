#pragma once

#include <string>

#include "model/GlazingData.h"

namespace orv::textfile {

/// The text of a pane file. Raises error 1022 for a back emissivity without a front one, and 5 for
/// codes that have no text, for a brace in a name and for a record without a spectrum.
std::string FormatSpectralText(const GlazingData& pane);

}  // namespace orv::textfile
