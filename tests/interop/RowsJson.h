// What tables should hold, for foreign readers to be compared with.
#pragma once

#include <ostream>
#include <vector>

#include "store/RandomChanges.h"

namespace orv::test {

/// An object that has, for each table by its name, an array of rows: objects of the values by the
/// names of their columns, null, booleans, numbers or texts (bytes in capital hexadecimal).
void writeRows(const std::vector<ModelledTable>& tables, std::ostream& out);

}  // namespace orv::test
