// GUIDs that are made for new rows.
#pragma once

#include "store/Value.h"

namespace orv::store::jet {

/// A random one, of version 4.
Guid makeGuid();

}  // namespace orv::store::jet
