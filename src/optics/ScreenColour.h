// Colours for a screen.
#pragma once

#include <array>
#include <cstdint>

namespace orv::optics {

/// Red, green and blue in sRGB of a colour in CIELAB, its white being the screen's: what an eye
/// sees that is used to the light behind the pane. What a screen cannot show becomes the nearest
/// that it can, each of the three by itself.
std::array<std::uint8_t, 3> screenColour(const std::array<double, 3>& Lab);

}  // namespace orv::optics
