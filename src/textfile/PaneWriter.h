#pragma once

#include <string>
#include <string_view>

#include "model/GlazingData.h"
#include "textfile/PaneEntries.h"

namespace orv::textfile {

/// The text of a pane file. Of PaneEntries::all the entries behind the writer's own are those that
/// hold something, and numbers have as many decimals as they need. Raises error 1022 for a back
/// emissivity without a front one, and 5 for codes that have no text, for a brace in a name and for
/// a record without a spectrum.
std::string FormatSpectralText(const GlazingData& pane, PaneEntries entries,
                               std::string_view filename);

}  // namespace orv::textfile
