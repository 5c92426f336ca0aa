#pragma once

#include <filesystem>
#include <memory>

#include "model/GlazingData.h"

namespace orv::textfile {

/// Reads the substrate and the layers that the record names, and the files that those name in
/// turn, and links them to it. Raises what reading them raises, error 53 for a file that is not
/// there and 5 for files that refer to each other in a circle or that are too many; the reference
/// that failed is cleared.
void fillFileReferences(const std::filesystem::path& folder,
                        const std::shared_ptr<GlazingData>& pane);

}  // namespace orv::textfile
