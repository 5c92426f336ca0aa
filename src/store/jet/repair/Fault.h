// What is wrong, as a repair lists it.
#pragma once

#include <string>

#include "store/jet/file/Bytes.h"

namespace orv::store::jet {

/// What an error says is wrong, without the name of the file.
inline std::string faultOf(const Error& error) {
  const auto* damage = dynamic_cast<const DamagedPage*>(&error);
  return damage != nullptr ? damage->fault() : error.description();
}

}  // namespace orv::store::jet
