#pragma once

#include <filesystem>
#include <string>

#include "model/GlazingData.h"

namespace orv::textfile {

/// Reads a pane file into a record whose `filename` is set. The files that the record refers to
/// are not read. With `repairs` it is read tolerantly, and `repairs` says what was mended.
void readPane(const std::filesystem::path& path, GlazingData& pane, std::string* repairs = nullptr);

}  // namespace orv::textfile
