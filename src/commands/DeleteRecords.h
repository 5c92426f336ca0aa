// Edit > Delete Records.
#pragma once

#include <memory>

#include "commands/Session.h"
#include "sources/RecordSelection.h"

namespace orv::commands {

struct DeletionResult {
  bool refused = false;    ///< the shown node's records cannot be deleted, or it is too risky
  bool cancelled = false;  ///< not confirmed, or ended by the user
  int deleted = 0;
  int failed = 0;
};

/// Deletes the records of `current` after a confirmation. `shown` is the node now shown; only a
/// record set of an ORV database of version 3.0.0 allows it. After a failure the user decides
/// whether to end, to try the record again or to go on with the next.
DeletionResult deleteRecords(Session& session, const sources::RecordSelection& current,
                             const std::shared_ptr<sources::datasource>& shown);

}  // namespace orv::commands
