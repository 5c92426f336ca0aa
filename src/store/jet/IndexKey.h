// Key bytes: how values of every type stand in an index.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/TableDefinition.h"

namespace orv::store::jet {

/// Appends the key bytes of `value` in `column`: a flag byte (Null, or not), then bytes whose
/// order, compared as unsigned, is the order of the values; all inverted for a descending
/// column. `value` is Null (for a boolean: false) or of the type that rows hold in the column
/// (RowView::value()), else kTypeMismatch is raised. Raises kNotSupported for a column type or a
/// sort order whose codes are not known, and kOverflow for a decimal with more digits after the
/// point than the column has.
void appendKey(Bytes& key, const Column& column, const Value& value, bool ascending);

/// The key of a row in an index: appendKey() of each of the index's columns.
/// `values` has one value a column of the table.
Bytes makeKey(const TableDefinition& table, const RealIndex& index, std::span<const Value> values);

/// Whether a row has an entry in an index: not when the index leaves out Nulls and all its
/// columns are Null.
bool hasEntry(const RealIndex& index, std::span<const Value> values);

}  // namespace orv::store::jet
