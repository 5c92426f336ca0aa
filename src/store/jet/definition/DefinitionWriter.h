// Table definitions into the bytes that the file holds.
#pragma once

#include <cstdint>

#include "store/Value.h"
#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Format.h"

namespace orv::store::jet {

/// The bytes of the definition of a table without rows, with all its columns and indexes.
Bytes encodeDefinition(const Format& format, const TableDefinition& table);

/// Puts one more index into the definition of `table`, leaving all else as it is: its tree
/// `real`, with `keyCount` different keys, and its name `logical`. Bytes after the definition's
/// end are cut off.
void addIndex(const Format& format, Bytes& definition, const TableDefinition& table,
              const RealIndex& real, const LogicalIndex& logical, std::uint32_t keyCount);

}  // namespace orv::store::jet
