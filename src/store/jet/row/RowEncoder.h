// Values into the bytes of a row.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"
#include "store/jet/row/Row.h"

namespace orv::store::jet {

/// `value` as its column holds it: converted to the column's type, and checked to fit it. Raises
/// kTypeMismatch or kOverflow naming the column, kDuplicateKey when a required column is Null or
/// text is empty where it must not be.
Value fitValue(const std::string& table, const Column& column, const Value& value);

/// The bytes of a row of Jet 4. `values` (one a column) have gone through fitValue(). Long values
/// are stored; those equal to what `before` (the row that is being changed) holds are kept as
/// they are, others of `before` are given back. Raises kOverflow when the row is too long.
Bytes encodeRow(Pager& pager, const TableDefinition& table, std::span<const Value> values,
                const RowView* before = nullptr);

}  // namespace orv::store::jet
