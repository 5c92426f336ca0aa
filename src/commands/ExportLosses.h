// What exports leave out.
#pragma once

#include <string>
#include <vector>

#include "model/GlazingData.h"

namespace orv::commands {

/// What a pane holds and no entry of a text file, braces of the description among it: they are
/// turned into parentheses.
std::vector<std::string> exportLossesOf(GlazingData& pane);

}  // namespace orv::commands
