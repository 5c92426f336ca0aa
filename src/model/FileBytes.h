// Files on disk, as readers of records take them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "model/Date.h"

namespace orv {

/// Raises error 57, or 70 where it is not permitted: "The file '...' cannot be read: ...".
/// @param reason  the system's number of the failure; 0 where it gave none
[[noreturn]] void raiseFileError(const std::filesystem::path& path, std::string_view action,
                                 int reason);

/// The whole content; nothing where the file has more than `most` bytes. Raises errors 57 and 70.
std::optional<std::string> fileBytes(const std::filesystem::path& path, std::uintmax_t most);

/// When the file was last changed, by the clock of the place; empty when the file system does not
/// tell.
OptionalDate fileDate(const std::filesystem::path& path);

}  // namespace orv
