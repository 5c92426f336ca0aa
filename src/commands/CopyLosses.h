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

}  // namespace orv::commands
