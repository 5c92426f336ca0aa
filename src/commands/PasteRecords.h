// Edit > Paste Records: the transfer of records into an ORV database.
#pragma once

#include <memory>
#include <string>

#include "commands/Notes.h"
#include "commands/Session.h"
#include "sources/RecordSelection.h"

namespace orv::commands {

struct PasteResult {
  /// The destination cannot take the records, or the user found it too risky; nothing was read or
  /// written.
  bool refused = false;
  /// Ended by the user; what was written before stays.
  bool cancelled = false;
  int copied = 0;       ///< records that were written whole
  int partly = 0;       ///< panes that were written at some of their angles only
  int failed = 0;       ///< records of which nothing was written
  int withoutData = 0;  ///< panes that have data at no angle, so that there is nothing to copy
  /// What became of records other than a reader of the source would expect.
  Notes notes = {};
  /// What the source does not give, so that 0 is stored.
  Notes zeros = {};
  /// What records hold and the destination has no column for.
  Notes notKept = {};

  /// "3 records copied, 1 failed."
  std::string summary() const;
};

/// Copies the records of `pending` into `current`, the node now shown: a record set of an ORV
/// database of version 3.0.0, or such a database itself, whose record set of the same kind is then
/// taken. `current` may be null, which is refused like any other unfit destination.
///
/// Every failure of a record is shown, and the work goes on with the next. Errors of the search
/// for the panes' angles, which comes first, are raised, and name the record.
PasteResult pasteRecords(Session& session, const sources::RecordSelection& pending,
                         const std::shared_ptr<sources::datasource>& current);

}  // namespace orv::commands
