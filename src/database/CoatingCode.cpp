#include "database/CoatingCode.h"

namespace orv::database {

std::string coatingCode(int /*first*/, int /*second*/) {
  return {};
}

}  // namespace orv::database
