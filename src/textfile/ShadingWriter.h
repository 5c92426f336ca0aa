#pragma once

#include <string>
#include <string_view>

#include "model/ShadingDataClass.h"

namespace orv::textfile {

/// The text of a shading file of this name, which reads back as the same record but for what files
/// do not hold: its group and its identifier; and a record with a spectrum but no integrated row
/// gains the row that the reader calculates. Raises error 5 for codes that have no text and
/// for a brace in a text.
std::string formatShading(const ShadingDataClass& shading, std::string_view filename);

}  // namespace orv::textfile
