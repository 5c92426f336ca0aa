// What exports into one file and into many have in common.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "commands/ErrorText.h"
#include "commands/ExportRecords.h"
#include "commands/LongWork.h"
#include "commands/RecordKind.h"
#include "commands/RecordReader.h"

namespace orv::commands {

/// What the records are. Raises kInvalidCall for those that no file of the form can hold, or not
/// several in one.
RecordKind requireExportable(const sources::RecordSelection& records, ExportForm form,
                             bool isOneFile);

/// The angles of a pane; raises kInvalidCall where there is none, and kRetrievalFailed where there
/// is no such pane.
std::vector<std::int16_t> requireAngles(const RecordReader& reader, const std::string& identifier);

/// A pane as a file of that form is to have it. Notes what no file gets: of several directions of
/// incidence at its angle only one is written, and a file that it names may not be there.
std::shared_ptr<GlazingData> paneForFile(const RecordReader& reader, const std::string& identifier,
                                         std::int16_t angle, ExportForm form, Notes& notKept);

/// Exports each record in turn, counts and shows what fails, and ends where the user wants it to.
template <class Result>
void exportEach(Session& session, const sources::RecordSelection& records, Result& result,
                const std::function<void(const std::string& identifier)>& write) {
  LongWork work(session.ui, "Exporting records...");
  work.expect(records.RecordsCount());
  for (std::int32_t i = 1; i <= records.RecordsCount() && !result.cancelled; ++i) {
    const std::string& identifier = records.SelectedRecordID(i);
    session.ui.status("Exporting " + identifier + "...");
    try {
      write(identifier);
    } catch (const std::exception& error) {
      ++result.failed;
      session.ui.message(MessageKind::recordFailure,
                         "The record " + identifier + " could not be exported: " + describe(error),
                         kProductName);
    }
    work.stepDone();
    result.cancelled = session.ui.cancelled();
  }
}

}  // namespace orv::commands
