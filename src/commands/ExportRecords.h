// Writing of records as files: spectral text files, products as JSON, tables of spectra.
#pragma once

#include <string>
#include <vector>

#include "commands/Notes.h"
#include "commands/Session.h"
#include "sources/RecordSelection.h"

namespace orv::commands {

enum class ExportForm {
  text,  ///< spectral text files
  json,  ///< panes as products, with all that their records hold
  csv,   ///< the spectra of panes, as tables
};

struct ExportOptions {
  std::string folder;
  /// Whether files that are in the folder already may be replaced. Otherwise a number is put
  /// behind the new file's name until no file has it.
  bool overwrite = false;
  ExportForm form = ExportForm::text;
};

struct ExportResult {
  bool cancelled = false;
  int failed = 0;                  ///< records of which a file at least could not be written
  std::vector<std::string> files;  ///< names of the files that were written, in order
  /// What had to be filled in because a text file needs it and the record does not say it, with
  /// the names of the files.
  Notes filled;
  /// What records hold and no entry of a text file, with the names of the files; and spectra of
  /// further directions of incidence, which no form holds, with the names of the records.
  Notes notKept;
};

/// Writes each pane of the selection to a file, one an angle where it has several, or each
/// shading. A file has the name of its record, with ".txt" where that has no extension (".json" and
/// ".csv" in place of it in the other forms), and with the angle where there are several; where a
/// text file has not the name of its record, an entry tells it. Failures are shown, and the work
/// goes on with the next record. Raises kPermissionDenied when the folder cannot be made,
/// kInvalidCall for frames, which no file can hold, and for shadings in other forms than text.
ExportResult exportRecords(Session& session, const sources::RecordSelection& records,
                           const ExportOptions& options);

/// What goes into one file.
struct JoinedExport {
  bool cancelled = false;
  int failed = 0;            ///< records that could not be read or written
  std::size_t dataSets = 0;  ///< panes, counted at each of their angles
  std::string text;          ///< empty where all failed
  Notes filled;              ///< as in ExportResult
  Notes notKept;
};

/// The panes of the selection, at all their angles, as one text: a product or a list of them; a
/// table with four columns a pane and angle; or a single text file. Failures are shown, and the
/// work goes on. Raises kInvalidCall for shadings and frames, and where more than one pane and
/// angle would have to go into a text file.
JoinedExport exportJoined(Session& session, const sources::RecordSelection& records,
                          ExportForm form);

/// Writes the text of a joined export. Raises kInvalidCall where there is a file of this name
/// that may not be replaced, else what writing raises.
void writeJoined(const std::string& path, const std::string& text, bool overwrite);

}  // namespace orv::commands
