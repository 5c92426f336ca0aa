#include "store/Connection.h"

namespace orv::store {}
