// Which texts are one for a database.
#pragma once

#include <string>
#include <string_view>

#include "store/Connection.h"

namespace orv::store {

/// The same bytes for texts (UTF-8) that compare as equal in a database of the order "General":
/// without regard to case, to blanks at the end and to letters that count as others (ß as ss). Of a
/// text for which the order has no key the text itself.
std::string textKey(std::string_view text);

/// The same by the order of a column of a table. Raises kNotSupported where that is not known.
std::string textKey(Connection& database, const std::string& table, const std::string& column,
                    const std::string& text);

}  // namespace orv::store
