// Values into the bytes of a row.
#pragma once

#include <span>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"
#include "store/jet/row/Row.h"

namespace orv::store::jet {

/// The bytes of a row of Jet 4. `values` (one a column) have gone through fitValue(). Long values
/// are stored; those equal to what `before` (the row that is being changed) holds are kept as
/// they are, others of `before` are given back. Raises kOverflow when the row is too long.
Bytes encodeRow(Pager& pager, const TableDefinition& table, std::span<const Value> values,
                const RowView* before = nullptr);

}  // namespace orv::store::jet
