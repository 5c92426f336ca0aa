// A row of a table that is changed or deleted.
#pragma once

#include <cstdint>
#include <string>

#include "database/Recordsets.h"

namespace orv::database {

/// The table, standing on the row with this key. Raises kTypeMismatch, "Pane could not be found!".
RecordsetPtr findRecord(store::Connection& dc, const std::string& table,
                        const std::string& keyColumn, std::int32_t id);

}  // namespace orv::database
