// Completion of a pane for a text file.
#pragma once

#include <string>
#include <vector>

#include "model/GlazingData.h"

namespace orv::commands {

/// Gives a pane everything that a text file needs: the emissivities that databases keep apart, and
/// the markers of GlazingData::EnforceSemantics. Returns what was filled in, "property = value"
/// each. Raises what EnforceSemantics raises for a pane that a file cannot hold.
std::vector<std::string> completeForFile(GlazingData& pane);

}  // namespace orv::commands
