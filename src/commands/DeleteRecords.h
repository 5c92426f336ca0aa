// Edit > Delete Records.
#pragma once

#include <memory>
#include <string>

#include "commands/Session.h"
#include "sources/RecordSelection.h"

namespace orv::commands {

struct DeletionResult {
  bool refused = false;    ///< the shown node's records cannot be deleted, or it is too risky
  bool cancelled = false;  ///< not confirmed, or ended by the user
  int deleted = 0;
  int failed = 0;

  bool isStopped() const { return refused || cancelled; }
  /// "3 records deleted, 1 failed." That none failed is said where it is asked for.
  std::string summary(bool saysNoneFailed = false) const;
};

/// Whether the records of `current` may be deleted: asks the user, and changes nothing. `shown` is
/// the node now shown; only a record set of an ORV database of version 3.0.0 that can be written
/// allows it. `details` says which records these are.
DeletionResult askToDelete(Session& session, const sources::RecordSelection& current,
                           const std::shared_ptr<sources::datasource>& shown,
                           const std::string& details = {});

/// Deletes records for which askToDelete() was not stopped. After a failure the user decides
/// whether to end, to try the record again or to go on with the next.
DeletionResult deleteAskedFor(Session& session, const sources::RecordSelection& current);

/// Both.
DeletionResult deleteRecords(Session& session, const sources::RecordSelection& current,
                             const std::shared_ptr<sources::datasource>& shown);

}  // namespace orv::commands
