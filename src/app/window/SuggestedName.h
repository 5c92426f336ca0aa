// What a file with records could be called.
#pragma once

#include <QString>

#include "sources/datasource.h"

namespace orv::app {

/// Without a suffix, "orvdata panes": the file or folder that a node is or belongs to, and what of
/// it.
QString suggestedName(const sources::datasource& node);

}  // namespace orv::app
