// The kinds of record that data sources hold.
#pragma once

#include <optional>

#include "sources/DataSources.h"

namespace orv::commands {

enum class RecordKind { panes, frames, shadings };

/// What the records of a node are: of a record set by its type, of a folder of text files by that
/// of its first file. None for a database and for an empty folder.
std::optional<RecordKind> recordKind(const sources::datasource& node);

/// "panes", "frames", "shadings".
const char* setName(RecordKind kind);

/// "1 pane", "3 frames", of the kind of a record set.
std::string countedRecords(const sources::datasource& node, std::int32_t count);

/// The record set of a database, or the folder itself, that holds records of this kind; null when
/// the node has none.
std::shared_ptr<sources::datasource> recordSetOf(const std::shared_ptr<sources::datasource>& node,
                                                 RecordKind kind);

}  // namespace orv::commands
