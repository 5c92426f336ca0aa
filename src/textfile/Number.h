// Numbers as text files hold them: a point before the decimals, whatever the user's locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orv::textfile {

/// The number that the whole text is ("5.7", "+1", "4.657817E-02"); none when the text is anything
/// else, or a number that the type cannot hold.
std::optional<float> parseSingle(std::string_view text);
std::optional<double> parseDouble(std::string_view text);
std::optional<std::int32_t> parseWhole(std::string_view text);

/// The shortest text that reads back as the same number ("5.7", "1", "1e-05").
std::string formatNumber(float value);
std::string formatNumber(double value);

}  // namespace orv::textfile
