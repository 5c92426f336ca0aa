// What there is to say of a pane that was copied.
#pragma once

#include "commands/TransferWork.h"

namespace orv::commands {

/// Where 0 is stored for what the source does not give: a record that is replaced keeps what it
/// has, of integrated values where those of another standard are not asked for.
enum class Zeros { all, ofValues, none };

/// Notes what the pane, which was written at one of its `angles`, lost on its way, or gained.
void notePane(TransferWork& work, const std::string& identifier, const GlazingData& pane,
              const std::vector<std::int16_t>& angles, Zeros zeros = Zeros::all);

}  // namespace orv::commands
