#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "model/ShadingDataClass.h"

namespace orv::textfile {

/// Reads a shading file. `filename` is the name that messages give; without its extension it is
/// the name of the shading. Integrated values that the file does not give are calculated from its
/// spectrum.
std::shared_ptr<ShadingDataClass> readShading(const std::filesystem::path& path,
                                              const std::string& filename);

}  // namespace orv::textfile
