// Key bytes: how values of every type stand in an index.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/index/TextKey.h"

namespace orv::store::jet {

/// Appends the key bytes of a value as Access makes them: a flag, then bytes whose
/// order, compared as unsigned, is the order of the values; all inverted for a descending
/// column. `value` is Null (for a boolean: false) or of the type that rows hold in the column
/// (RowView::value()), else kTypeMismatch is raised. Raises kNotSupported for a column type or a
/// text whose codes in its sort order are not known, and kOverflow for a decimal with more digits
/// after the point than the column has.
void appendKey(Bytes& key, const Column& column, const Value& value, bool ascending,
               Expansion expansion = Expansion::letters);

/// Appends the bytes with which the keys of a value begin, whatever program made them. False when
/// these are not all: of text with letters that expand, one program makes other keys than Access.
bool appendSearchKey(Bytes& key, const Column& column, const Value& value, bool ascending);
/// The same as a key of its own; none where appendKey() raises kNotSupported.
std::optional<Bytes> makeSearchKey(const Column& column, const Value& value, bool ascending);

/// The key of a row in an index: appendKey() of each of the index's columns.
/// `values` has one value a column of the table.
Bytes makeKey(const TableDefinition& table, const RealIndex& index, std::span<const Value> values);
/// The same; none where it raises kNotSupported. The row may have an entry all the same, made by
/// another program.
std::optional<Bytes> makeKnownKey(const TableDefinition& table, const RealIndex& index,
                                  std::span<const Value> values);
/// The key that another program gives to a row; none where it is the right one.
std::optional<Bytes> makeOtherForm(const TableDefinition& table, const RealIndex& index,
                                   std::span<const Value> values);

/// Whether a row has Null in a column of an index.
bool anyNull(const RealIndex& index, std::span<const Value> values);
/// Whether a row has an entry in an index: not when the index leaves out Nulls and all its
/// columns are Null.
bool hasEntry(const RealIndex& index, std::span<const Value> values);

}  // namespace orv::store::jet
