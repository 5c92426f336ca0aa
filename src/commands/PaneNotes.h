// What there is to say of a pane that was copied.
#pragma once

#include "commands/TransferWork.h"

namespace orv::commands {

/// Notes what the pane, which was written at one of its `angles`, lost on its way, or gained.
void notePane(TransferWork& work, const std::string& identifier, const GlazingData& pane,
              const std::vector<std::int16_t>& angles);

}  // namespace orv::commands
