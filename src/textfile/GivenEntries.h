// What the file of a record says of it, whatever its values.
#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace orv::textfile {

/// The line of a pane file that gives its infrared transmittance.
inline constexpr const char* kInfraredLine = "tir";

/// The keys of the entries that have a value, in lower case, and kInfraredLine. With `isTolerant`
/// the text is made one of the format first. Raises what readText() and the tokenizer raise.
std::set<std::string> givenEntries(const std::filesystem::path& path, bool isTolerant = false);

}  // namespace orv::textfile
