// Edit > Paste Records: the transfer of records into an ORV database.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands/Notes.h"
#include "commands/Session.h"
#include "optics/Standard.h"
#include "sources/RecordSelection.h"

namespace orv::commands {

/// What is known of a record before it is copied.
struct KnownRecord {
  std::int32_t replaces = 0;  ///< key of a record of the destination; 0 where it is found by name
  std::vector<std::string> parts = {};  ///< other files that hold the same pane at other angles
};

struct PasteOptions {
  /// The group that the records are put into; where it is empty the user is asked.
  std::string group = {};
  /// What is to become of records that are there; without it the user is asked.
  std::optional<IfThere> ifThere = {};
  /// By which standard the integrated values of panes are computed whose source has none; without
  /// it they stay 0.
  std::optional<optics::Standard> integrateBy = optics::kUsualStandard;
  /// By identifiers.
  std::map<std::string, KnownRecord> known = {};
  /// Numbers of a record that is replaced stay where they are no further apart.
  double tolerance = 0;
};

struct PasteResult {
  /// The destination cannot take the records, or the user found it too risky; nothing was read or
  /// written.
  bool refused = false;
  /// Ended by the user; what was written before stays.
  bool cancelled = false;
  int copied = 0;       ///< records that were written whole and are new
  int replaced = 0;     ///< records that took the place of others
  int skipped = 0;      ///< records that the destination had already, and that were passed over
  int partly = 0;       ///< panes that were written at some of their angles only
  int failed = 0;       ///< records of which nothing was written
  int withoutData = 0;  ///< panes that have data at no angle, so that there is nothing to copy
  int integrated = 0;   ///< panes whose integrated values were computed
  std::string standard = {};  ///< by this standard
  /// What became of records other than a reader of the source would expect.
  Notes notes = {};
  /// What the source does not give, so that 0 is stored.
  Notes zeros = {};
  /// What records hold and the destination has no column for.
  Notes notKept = {};

  /// Adds the numbers of another copy.
  void add(const PasteResult& other);
  /// "3 records copied, 1 failed. Integrated values of 3 panes computed by EN 410." That none
  /// failed is said where it is asked for.
  std::string summary(bool saysNoneFailed = false) const;
};

/// Copies the records of `pending` into `current`, the node now shown: a record set of an ORV
/// database of version 3.0.0, or such a database itself, whose record set of the same kind is then
/// taken. `current` may be null, which is refused like any other unfit destination.
///
/// A record of the same name and group as one that is there is treated as the options say, save for
/// shadings, of which there may be several of one name.
///
/// Every failure of a record is shown, and the work goes on with the next. Errors of the search
/// for the panes' angles, which comes first, are raised, and name the record.
PasteResult pasteRecords(Session& session, const sources::RecordSelection& pending,
                         const std::shared_ptr<sources::datasource>& current,
                         const PasteOptions& options = {});

}  // namespace orv::commands
