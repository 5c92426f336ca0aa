// What the columns of shadings are called.
#pragma once

#include <string>
#include <string_view>

#include "database/ShadingColumns.h"

namespace orv::commands {

/// The section in which a column is shown, by its name.
std::string_view shadingSection(std::string_view column);

/// The name of a column in words: "Sol_refl_slat_surf_outd" is "solar reflectance outdoor". Columns
/// of different sections may have the same.
std::string shadingFieldName(std::string column);
/// The same, with the section before it where columns of several have the name.
std::string distinctShadingFieldName(const std::string& column);

/// The unit of a number; empty for a fraction.
const char* shadingUnit(Property<double> ShadingDataClass::*member);

}  // namespace orv::commands
