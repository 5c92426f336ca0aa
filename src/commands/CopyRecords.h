// Edit > Copy Records.
#pragma once

#include <optional>

#include "commands/UserInterface.h"
#include "sources/RecordSelection.h"

namespace orv::commands {

/// The new pending copy, a clone of the current selection. With nothing selected says so and gives
/// none; the pending copy then stays what it was.
std::optional<sources::RecordSelection> copyRecords(const sources::RecordSelection& current,
                                                    UserInterface& ui);

}  // namespace orv::commands
