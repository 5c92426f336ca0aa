// The records of files as a table of fields.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "commands/RecordTable.h"
#include "commands/Session.h"

namespace orv::commands {

/// The fields of records for conditions and lists: those that `openRecordTable` has for a record
/// set; for a folder, of which that has the names of the files only, what the files hold, in
/// columns that are called as the ones of ORV databases. Each file is read when the table comes to
/// it. What cannot be read has its name only, and "NAME cannot be read: WHY" is added to
/// `failures`.
std::unique_ptr<RecordTable> openFieldTable(Session& session,
                                            const std::shared_ptr<sources::datasource>& node,
                                            std::vector<std::string>& failures);

}  // namespace orv::commands
