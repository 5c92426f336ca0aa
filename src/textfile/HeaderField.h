#pragma once

#include <string>
#include <string_view>

namespace orv::textfile {

/// The line "{ label: value }". Raises error 5 for a value with a brace in it, which would end
/// the entry too early when the file is read.
std::string headerField(std::string_view label, std::string_view value);

}  // namespace orv::textfile
