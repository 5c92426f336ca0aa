// The question whether the files of a folder are to be read tolerantly.
#pragma once

#include <memory>

#include "commands/Session.h"

namespace orv::commands {

/// Looks for pane files of a folder that can be read tolerantly only, and asks once for all of them
/// whether they are to be read so.
void offerTolerantReading(Session& session, const sources::datasource& folder);

}  // namespace orv::commands
