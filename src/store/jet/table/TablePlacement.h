// The pages that a new table or index takes.
#pragma once

#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// Gives a new table its maps and the roots of its indexes, and writes its definition, whose
/// first page `table.page` names. Needs a transaction.
void placeTable(Pager& pager, TableDefinition& table);

/// Gives a new index of `table` its map and an empty root. Needs a transaction.
void placeIndex(Pager& pager, const TableDefinition& table, RealIndex& index);

}  // namespace orv::store::jet
