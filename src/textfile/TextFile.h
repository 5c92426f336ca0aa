// Text files on disk: finding them, reading them whole, writing them.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace orv::textfile {

/// A file that is larger holds no spectrum that anybody measured.
inline constexpr std::uintmax_t kLargestFile = std::uintmax_t{16} << 20;

/// The regular file of this name in the folder. When the exact name is not there, a name that
/// differs only in the case of letters is taken (the first in alphabetical order).
std::optional<std::filesystem::path> findFile(const std::filesystem::path& folder,
                                              const std::string& name);

/// As `findFile`; raises error 53, which names file and folder, when there is none.
std::filesystem::path requireFile(const std::filesystem::path& folder, const std::string& name);

/// Whether these first bytes of a file are the mark of UTF-16, in either order of bytes.
bool hasUtf16Mark(std::string_view bytes);

/// The whole text in UTF-8. It may be in UTF-16 with its mark; other bytes that are not valid UTF-8
/// are taken as Windows-1252. Raises errors 57 and 70 for what cannot be read, and 5 for a file
/// that is too large or no text.
std::string readText(const std::filesystem::path& path);

/// Makes the file hold exactly this text; when that fails, what it held before, if it was there.
/// Raises errors 57 and 70.
void writeText(const std::string& path, std::string_view text);

}  // namespace orv::textfile
