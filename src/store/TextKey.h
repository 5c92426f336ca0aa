// What texts have in common that the store takes for the same.
#pragma once

#include <string>
#include <string_view>

namespace orv::store {

/// The same bytes for texts (UTF-8) that compare as equal in a database of the order "General":
/// without regard to case and to blanks at the end, letters that expand as those that they stand
/// for. Of a text for which the order has no key the text itself.
std::string textKey(std::string_view text);

}  // namespace orv::store
