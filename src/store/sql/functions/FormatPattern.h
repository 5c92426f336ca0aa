// Patterns of the Format function.
#pragma once

#include <string>
#include <string_view>

namespace orv::store::sql {

/// A number by a pattern such as "#,##0.00;(0.00)" or a named one such as "Fixed". Halves round
/// away from zero.
std::string formatNumber(double number, std::string_view pattern);

/// A date by a pattern such as "yyyy-mm-dd hh:nn" or a named one such as "Short Date"; names are
/// English, and the dates without a pattern of their own are year first.
std::string formatDate(double days, std::string_view pattern);

/// Text by a pattern of @ (a character or a blank), & (a character or nothing), < and > (lower
/// and upper case).
std::string formatText(const std::string& text, std::string_view pattern);

/// Whether a pattern is one for dates.
bool isDatePattern(std::string_view pattern);

}  // namespace orv::store::sql
