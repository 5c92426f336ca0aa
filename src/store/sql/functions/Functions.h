// The functions of Access SQL, registered with SQLite under the names of the function table.
#pragma once

#include <sqlite3.h>

#include "store/sql/functions/Callbacks.h"

namespace orv::store::sql {

/// Registers all functions with a connection. What they raise is kept in `failure`, which must
/// live as long as the connection.
void registerFunctions(sqlite3* db, CallbackFailure& failure);

void registerTextFunctions(sqlite3* db, CallbackFailure& failure);
void registerNumberFunctions(sqlite3* db, CallbackFailure& failure);
void registerConversionFunctions(sqlite3* db, CallbackFailure& failure);
void registerDateFunctions(sqlite3* db, CallbackFailure& failure);
void registerFormatFunctions(sqlite3* db, CallbackFailure& failure);
void registerAggregates(sqlite3* db);

}  // namespace orv::store::sql
