#include "store/sql/functions/Functions.h"

namespace orv::store::sql {

void registerFunctions(sqlite3* db, CallbackFailure& failure) {
  registerTextFunctions(db, failure);
  registerNumberFunctions(db, failure);
  registerConversionFunctions(db, failure);
  registerDateFunctions(db, failure);
  registerFormatFunctions(db, failure);
  registerAggregates(db);
}

}  // namespace orv::store::sql
