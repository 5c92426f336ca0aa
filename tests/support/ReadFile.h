// The content of a file of the disk.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace orv::test {

/// All bytes of a file; none where it cannot be read.
inline std::string readFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace orv::test
