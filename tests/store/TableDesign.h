// Designs of tables, written as text.
#pragma once

#include <string_view>

#include "store/Schema.h"

namespace orv::test {

/// A table with columns such as `ID longInteger auto, Name text 40 required filled =7, d numeric
/// 10.2` and indexes such as `Key primary: ID; ByName unique ignoreNulls required: Name-, ID`;
/// `3*a# byte` stands for three columns (or indexes), a0, a1 and a2.
store::TableInfo design(std::string_view name, std::string_view columns,
                        std::string_view indexes = "");

}  // namespace orv::test
