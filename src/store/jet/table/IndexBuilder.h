// Indexes for rows that are there already.
#pragma once

#include <cstdint>

#include "store/jet/definition/TableDefinition.h"
#include "store/jet/table/Table.h"

namespace orv::store::jet {

/// Makes the tree of an index of `definition` over the rows that `table` has, and gives it its root
/// and its map; the definition is not written. Gives the number of different keys. Raises
/// kDuplicateKey when the rows are not what the index asks for, kNotSupported for text whose order
/// is not known. Needs a transaction.
std::uint32_t buildTree(const Table& table, const TableDefinition& definition, RealIndex& index);

/// Makes the tree of the last index of `definition`, which `table` does not have yet, fills it
/// from the table's rows and writes the definition. Raises kDuplicateKey when the rows are not
/// what the index asks for. Needs a transaction.
void buildLastIndex(const Table& table, TableDefinition& definition);

}  // namespace orv::store::jet
