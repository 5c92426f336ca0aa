// What copies and exports leave out.
#pragma once

#include <string>
#include <vector>

#include "model/FrameDataClass.h"
#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"

namespace orv::commands {

// Each gives the names of what the record holds and no column of the database takes.
std::vector<std::string> lossesOf(const GlazingData& pane);
std::vector<std::string> lossesOf(const FrameDataClass& frame);
std::vector<std::string> lossesOf(const ShadingDataClass& shading);

/// What a pane holds and no entry of a text file, braces of the description among it: they are
/// turned into parentheses.
std::vector<std::string> exportLossesOf(GlazingData& pane);

/// Whether all integrated values that a database holds of a pane are 0, as they are where the
/// source has none.
bool lacksIntegratedValues(const GlazingData& pane);

}  // namespace orv::commands
