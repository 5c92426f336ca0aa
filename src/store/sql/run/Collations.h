// The collations of text and of fixed-point numbers.
#pragma once

#include <sqlite3.h>

#include "store/sql/functions/TextOrder.h"

namespace orv::store::sql {

/// Registers kTextCollation, which compares by `order` (it must live as long as the connection),
/// and kDecimalCollation.
void registerCollations(sqlite3* db, const TextOrder& order);

}  // namespace orv::store::sql
