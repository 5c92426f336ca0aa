// Table definitions into the bytes that the file holds.
#pragma once

#include <cstdint>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Format.h"

namespace orv::store::jet {

/// The bytes of the definition of a table without rows, with all its columns and indexes.
Bytes encodeDefinition(const Format& format, const TableDefinition& table);

/// Puts one more tree of an index, with `keyCount` different keys, behind those that the
/// definition of `table` has, leaving all else as it is. Bytes after the definition's end are cut
/// off.
void addTree(const Format& format, Bytes& definition, const TableDefinition& table,
             const RealIndex& real, std::uint32_t keyCount);
/// The same with a named index, whose tree addTree() has put there.
void addIndexName(const Format& format, Bytes& definition, const TableDefinition& table,
                  const LogicalIndex& logical);

}  // namespace orv::store::jet
