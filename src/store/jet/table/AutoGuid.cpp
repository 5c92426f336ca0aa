#include "store/jet/table/AutoGuid.h"

#include <random>

namespace orv::store::jet {

Guid makeGuid() {
  std::random_device random;
  Guid guid;
  for (std::uint8_t& byte : guid.bytes) {
    byte = static_cast<std::uint8_t>(random());
  }
  // The first three parts stand little-endian, so the version is in the last byte of the third.
  std::uint8_t& version = guid.bytes[7];
  std::uint8_t& variant = guid.bytes[8];
  version = static_cast<std::uint8_t>(0x40 | (version & 0x0f));
  variant = static_cast<std::uint8_t>(0x80 | (variant & 0x3f));
  return guid;
}

}  // namespace orv::store::jet
