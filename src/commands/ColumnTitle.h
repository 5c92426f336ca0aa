// How the columns of record sets are called in front of people.
#pragma once

#include <string>
#include <string_view>

namespace orv::commands {

struct ColumnTitle {
  std::string text;
  std::string unit;  ///< empty for texts and pure numbers
};

/// The title of a database column: words of its own where the column's name is terse, else the
/// name taken apart into words. The unit is that in which databases hold the column.
ColumnTitle columnTitle(std::string_view column);

}  // namespace orv::commands
