// Results of SQLite made into values of the store.
#pragma once

#include <sqlite3.h>

#include "store/Value.h"
#include "store/sql/translate/Scope.h"

namespace orv::store::sql {

/// The value of column `index` of the statement's current row, in the type of the column; where
/// the type is not known, or SQLite has something else, in the type that SQLite has.
Value outputValue(sqlite3_stmt* statement, int index, const TypedColumn& column);

/// The GUID that "{00112233-4455-6677-8899-AABBCCDDEEFF}" stands for; the text itself as a value
/// where it is none.
Value guidFromText(const std::string& text);

}  // namespace orv::store::sql
