// The integrated values that a source stores with a pane.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "model/GlazingData.h"

namespace orv::commands {

/// The names of all values that some source stores; they are those of optics::kValueNames.
std::vector<std::string_view> storedValueNames();

/// The stored value of this name; none where the source does not give it.
std::optional<double> storedValue(const GlazingData& pane, std::string_view name);

}  // namespace orv::commands
