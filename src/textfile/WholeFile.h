// Files that are there whole or not at all.
#pragma once

#include <filesystem>
#include <string_view>

namespace orv::textfile {

/// Writes the bytes under another name in the same folder, waits until they are on the disk, and
/// puts the file in place. Returns 0, or the system's number of what failed; then what was there
/// before is as it was.
int writeWhole(const std::filesystem::path& path, std::string_view bytes);

}  // namespace orv::textfile
