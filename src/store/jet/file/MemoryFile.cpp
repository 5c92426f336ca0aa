#include "store/jet/file/MemoryFile.h"

#include <algorithm>
#include <cstring>

#include "errors/Error.h"
#include "store/StoreError.h"

namespace orv::store::jet {

void MemoryFile::read(std::uint64_t offset, std::uint8_t* bytes, std::size_t length) {
  if (offset > bytes_.size() || length > bytes_.size() - offset) {
    throw Error(kStoreFailure, "Content in memory was to be read past its end.");
  }
  std::memcpy(bytes, bytes_.data() + offset, length);
}

void MemoryFile::write(std::uint64_t offset, const std::uint8_t* bytes, std::size_t length) {
  bytes_.resize(std::max<std::size_t>(bytes_.size(), offset + length));
  std::memcpy(bytes_.data() + offset, bytes, length);
}

}  // namespace orv::store::jet
