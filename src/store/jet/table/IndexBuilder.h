// Indexes for rows that are there already.
#pragma once

#include "store/jet/definition/TableDefinition.h"
#include "store/jet/table/Table.h"

namespace orv::store::jet {

/// Makes the tree of the last index of `definition`, which `table` does not have yet, fills it
/// from the table's rows and writes the definition. Raises kDuplicateKey when the rows are not
/// what the index asks for. Needs a transaction.
void buildLastIndex(const Table& table, TableDefinition& definition);

}  // namespace orv::store::jet
