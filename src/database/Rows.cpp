#include "database/Rows.h"

#include "errors/Error.h"

namespace orv::database {

RecordsetPtr findRecord(store::Connection& dc, const std::string& table,
                        const std::string& keyColumn, std::int32_t id) {
  auto rows = openKeyset(dc, table);
  rows->find(keyColumn + " = " + quoted(std::to_string(id)));
  if (rows->eof()) {
    rows->close();
    throw Error(kTypeMismatch, table + " could not be found!");
  }
  return rows;
}

void deleteRows(store::Connection& dc, const std::string& table, const std::string& condition) {
  auto rows = openForBatchDeletion(dc, "SELECT * FROM " + table + " WHERE " + condition);
  while (!rows->eof()) {
    rows->deleteRow();
    rows->moveNext();
  }
  rows->updateBatch();
  rows->close();
}

}  // namespace orv::database
