// The records of a node at a glance.
#pragma once

#include <string>
#include <vector>

#include "commands/Session.h"

namespace orv::commands {

/// What identifies a record and what its maker and users call it. What a source does not know is
/// empty.
struct RecordListEntry {
  std::string identifier;
  std::string name;
  std::string product;
  std::string group;
  std::string supplier;
  /// Why a text file cannot be read; empty for every other record.
  std::string failure = {};
};

/// The column of a record set that holds the identifiers of its records; empty for a node that is
/// none.
const char* identifierColumn(sources::DataTypeCode type);

/// The identifiers of all records of a record set or folder, in its own order.
std::vector<std::string> recordIdentifiers(const sources::datasource& node);

/// All records of a record set or folder. A text file that cannot be read has its name only.
std::vector<RecordListEntry> listRecords(Session& session,
                                         const std::shared_ptr<sources::datasource>& node);

/// Number of records of a record set or folder.
std::int64_t countRecords(const sources::datasource& node);

}  // namespace orv::commands
