#include "commands/ExportRecords.h"

#include <filesystem>

#include "commands/CopyLosses.h"
#include "commands/ErrorText.h"
#include "commands/FileCompletion.h"
#include "commands/FileNames.h"
#include "commands/LongWork.h"
#include "commands/RecordKind.h"
#include "commands/RecordReader.h"

namespace orv::commands {

namespace {

/// The folder with the separator at its end that the writers want.
std::string prepared(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) {
    throw Error(kPermissionDenied,
                "The folder \"" + folder + "\" cannot be made: " + error.message() + ".");
  }
  return (std::filesystem::path(folder) / "").string();
}

class Export {
 public:
  Export(Session& session, const sources::RecordSelection& records, const ExportOptions& options)
      : session_(session),
        reader_(session, records.DataSourcePtr()),
        folder_(prepared(options.folder)),
        names_(folder_, options.overwrite) {}

  ExportResult run(const sources::RecordSelection& records, RecordKind kind) {
    LongWork work(session_.ui, "Exporting records...");
    work.expect(records.RecordsCount());
    for (std::int32_t i = 1; i <= records.RecordsCount() && !result_.cancelled; ++i) {
      const std::string& identifier = records.SelectedRecordID(i);
      session_.ui.status("Exporting " + identifier + "...");
      writeRecord(identifier, kind);
      work.stepDone();
      result_.cancelled = session_.ui.cancelled();
    }
    return result_;
  }

 private:
  void writeRecord(const std::string& identifier, RecordKind kind) {
    try {
      kind == RecordKind::panes ? writePane(identifier) : writeShading(identifier);
    } catch (const std::exception& error) {
      ++result_.failed;
      session_.ui.message(MessageKind::recordFailure,
                          "The record " + identifier + " could not be exported: " + describe(error),
                          kProductName);
    }
  }

  void writePane(const std::string& identifier) {
    const auto angles = reader_.angles(identifier);
    if (angles.empty()) throw Error(kInvalidCall, "The pane has data at no angle.");
    for (const std::int16_t angle : angles) {
      const auto pane = reader_.pane(identifier, angle);
      const auto losses = exportLossesOf(*pane);
      const auto filled = completeForFile(*pane);
      const std::string name = names_.nameForPane(
          pane->filename(), angles.size() > 1 ? std::optional(angle) : std::nullopt);
      session_.textFiles.WriteSpectralFile(folder_, name, *pane, PaneEntries::all);
      result_.files.push_back(name);
      for (const std::string& each : filled) result_.filled.add(each, name);
      for (const std::string& each : losses) result_.notKept.add(each, name);
    }
  }

  void writeShading(const std::string& identifier) {
    const auto shading = reader_.shading(identifier);
    const std::string name = names_.nameForShading(shading->name());
    session_.textFiles.WriteSpectralFileShading(folder_, name, *shading);
    result_.files.push_back(name);
  }

  Session& session_;
  RecordReader reader_;
  std::string folder_;
  FileNames names_;
  ExportResult result_;
};

}  // namespace

ExportResult exportRecords(Session& session, const sources::RecordSelection& records,
                           const ExportOptions& options) {
  const auto kind = recordKind(*records.DataSourcePtr());
  if (!kind || kind == RecordKind::frames) {
    throw Error(kInvalidCall, "Only panes and shadings can be written as text files.");
  }
  return Export(session, records, options).run(records, *kind);
}

}  // namespace orv::commands
