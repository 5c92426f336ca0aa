// What the records and their readers do with text. All text is UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace orv {

/// The text without the blanks, tabs and line breaks at its two ends.
std::string_view trimmed(std::string_view text);

/// Case mapping of all letters, not only of ASCII's, the same in every locale.
std::string lowerCase(std::string_view text);
std::string upperCase(std::string_view text);

/// Whether two texts differ in the case of letters at most.
bool equalIgnoringCase(std::string_view a, std::string_view b);

}  // namespace orv
