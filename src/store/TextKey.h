// Which texts are one for a database.
#pragma once

#include <string>

#include "store/Connection.h"

namespace orv::store {

/// The same for all texts that a column of a table takes for one: without regard to case, to blanks
/// at the end and to letters that count as others (ß as ss). Raises kNotSupported where the sort
/// order of the column is not known.
std::string textKey(Connection& database, const std::string& table, const std::string& column,
                    const std::string& text);

}  // namespace orv::store
