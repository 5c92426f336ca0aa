#include "database/Rows.h"

#include "errors/Error.h"

namespace orv::database {

RecordsetPtr findRecord(store::Connection& dc, const std::string& table,
                        const std::string& keyColumn, std::int32_t id) {
  auto rows = openKeyset(dc, table);
  rows->find(keyColumn + " = " + quoted(std::to_string(id)));
  if (rows->eof()) throw Error(kTypeMismatch, table + " could not be found!");
  return rows;
}

}  // namespace orv::database
