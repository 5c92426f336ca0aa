// Rows of a table that are changed or deleted.
#pragma once

#include <cstdint>
#include <string>

#include "database/Recordsets.h"

namespace orv::database {

/// The table, standing on the row with this key. Raises kTypeMismatch, "Pane could not be found!".
RecordsetPtr findRecord(store::Connection& dc, const std::string& table,
                        const std::string& keyColumn, std::int32_t id);

/// Deletes the rows of a table that meet a condition of SQL, in one commit.
void deleteRows(store::Connection& dc, const std::string& table, const std::string& condition);

}  // namespace orv::database
