// The pages that a new table or index takes.
#pragma once

#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// Gives a new table its maps and the roots of its indexes, and writes its definition, whose
/// first page `table.page` names. Needs a transaction.
void placeTable(Pager& pager, TableDefinition& table);

}  // namespace orv::store::jet
