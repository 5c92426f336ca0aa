// The time of day.
#pragma once

#include "store/Value.h"

namespace orv::store::jet {

/// The local date and time, to the second.
Date localTime();

}  // namespace orv::store::jet
