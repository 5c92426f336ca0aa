// Reading of all records of a source, to be compared.
#pragma once

#include <functional>

#include "commands/Session.h"
#include "commands/compare/Record.h"

namespace orv::commands::compare {

struct Reading {
  Session& session;
  std::shared_ptr<sources::datasource> node;  ///< a record set, or a folder
  RecordKind kind;
  bool wantsIntegrated = true;
  bool wantsCurves = true;
  Grids& grids;

  /// Raises Cancelled where the user wants the work to end; to be called often.
  void goOn() const;
};

/// Whole tables are gone through once, in place of a search for each record. Raises what the store
/// raises, and Cancelled; that a record cannot be read is told in the result.
RecordSet readRecordSet(const Reading& reading);

// By the kind of source.
RecordSet readOrvRecords(const Reading& reading);
RecordSet readGlazingDatabase(const Reading& reading);
RecordSet readFiles(const Reading& reading);

}  // namespace orv::commands::compare
