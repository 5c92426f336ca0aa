// Writing of records as spectral text files.
#pragma once

#include <string>
#include <vector>

#include "commands/Notes.h"
#include "commands/Session.h"
#include "sources/RecordSelection.h"

namespace orv::commands {

struct ExportOptions {
  std::string folder;
  /// Whether files that are in the folder already may be replaced. Otherwise a number is put
  /// behind the new file's name until no file has it.
  bool overwrite = false;
};

struct ExportResult {
  bool cancelled = false;
  int failed = 0;                  ///< records of which a file at least could not be written
  std::vector<std::string> files;  ///< names of the files that were written, in order
  /// What had to be filled in because a text file needs it and the record does not say it, with
  /// the names of the files.
  Notes filled;
  /// What records hold and no entry of a text file, with the names of the files.
  Notes notKept;
};

/// Writes each pane of the selection to a file, one an angle where it has several, or each
/// shading. A file has the name of its record, with ".txt" where that has no extension, and with
/// the angle where there are several; where that is not the name of the record, an entry tells it.
/// Failures are shown, and the work goes on with the next record. Raises kPermissionDenied when the
/// folder cannot be made, kInvalidCall for frames, which no text file can hold.
ExportResult exportRecords(Session& session, const sources::RecordSelection& records,
                           const ExportOptions& options);

}  // namespace orv::commands
