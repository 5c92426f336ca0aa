// JSON as text, which anybody may have written.
#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

namespace orv::productfile {

using Json = nlohmann::json;

/// Lists and objects within each other; those of products are no more than ten.
inline constexpr int kDeepest = 64;
/// Values, lists and objects of one file: some thousand products.
inline constexpr std::size_t kMostValues = 10'000'000;

/// The values of a text. Raises error 5 for what is no JSON, for text that is no UTF-8, and for
/// more depth or more values than are read, 6 for a number that no computer number holds. The error
/// names `file`, line and column.
Json parseJson(std::string_view text, std::string_view file);

}  // namespace orv::productfile
