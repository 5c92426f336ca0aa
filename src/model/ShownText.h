// Texts of unknown origin, made fit to be looked at.
#pragma once

#include <string>
#include <string_view>

namespace orv {

/// The text as people may see it. What would steer a terminal, or turn the order of the letters
/// around it, is spelled out: control characters and bidirectional overrides as \u001b or \u202e,
/// bytes that are no UTF-8 as \xff. Line ends stay, as one character, and so do tabs.
std::string shown(std::string_view text);

}  // namespace orv
