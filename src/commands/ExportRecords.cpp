#include "commands/ExportRecords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <filesystem>

#include "commands/ExportLosses.h"
#include "commands/ExportWork.h"
#include "commands/FileCompletion.h"
#include "commands/FileNames.h"
#include "commands/SpectraCsv.h"
#include "model/IntegratedColumns.h"
#include "productfile/ProductWriter.h"
#include "textfile/TextFile.h"

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
        form_(options.form),
        folder_(prepared(options.folder)),
        names_(folder_, options.overwrite) {}

  ExportResult run(const sources::RecordSelection& records, RecordKind kind) {
    exportEach(session_, records, result_, [&](const std::string& identifier) {
      kind == RecordKind::panes ? writePane(identifier) : writeShading(identifier);
    });
    return result_;
  }

 private:
  void writePane(const std::string& identifier) {
    const auto angles = requireAngles(reader_, identifier);
    for (const std::int16_t angle : angles) {
      const auto pane = paneForFile(reader_, identifier, angle, form_, result_.notKept);
      const auto angleInName = angles.size() > 1 ? std::optional(angle) : std::nullopt;
      switch (form_) {
        case ExportForm::text:
          writeText(*pane, angleInName);
          break;
        case ExportForm::json:
          write(*pane, angleInName, ".json",
                productfile::formatProducts({productfile::productOf(*pane)}));
          break;
        case ExportForm::csv:
          write(*pane, angleInName, ".csv", spectraCsv({{"", pane->SpectralData()}}));
          break;
      }
    }
  }

  void writeText(GlazingData& pane, std::optional<std::int16_t> angle) {
    const std::string record = pane.filename();
    const auto losses = exportLossesOf(pane);
    const auto filled = completeForFile(pane);
    const std::string name = names_.nameForPane(record, angle);
    session_.textFiles.WriteSpectralFile(folder_, name, pane, PaneEntries::all);
    result_.files.push_back(name);
    for (const std::string& each : filled) result_.filled.add(each, name);
    for (const std::string& each : losses) result_.notKept.add(each, name);
  }

  void write(const GlazingData& pane, std::optional<std::int16_t> angle,
             const std::string& extension, const std::string& text) {
    const std::string name = names_.nameForPane(pane.filename(), angle, extension);
    textfile::writeText(folder_ + name, text);
    result_.files.push_back(name);
  }

  void writeShading(const std::string& identifier) {
    const auto shading = reader_.shading(identifier);
    const std::string name = names_.nameForShading(shading->name());
    session_.textFiles.WriteSpectralFileShading(folder_, name, *shading);
    result_.files.push_back(name);
  }

  Session& session_;
  RecordReader reader_;
  ExportForm form_;
  std::string folder_;
  FileNames names_;
  ExportResult result_;
};

}  // namespace

RecordKind requireExportable(const sources::RecordSelection& records, ExportForm form,
                             bool isOneFile) {
  const auto kind = recordKind(*records.DataSourcePtr());
  if (kind == RecordKind::frames) {
    throw Error(kInvalidCall, "Frames cannot be written as files, only panes and shadings.");
  }
  if (kind == RecordKind::shadings && (isOneFile || form != ExportForm::text)) {
    throw Error(kInvalidCall, "Shadings are written as text files only, each into one of its own.");
  }
  return kind.value();
}

std::vector<std::int16_t> requireAngles(const RecordReader& reader, const std::string& identifier) {
  auto angles = reader.dataAngles(identifier);
  if (angles.empty()) {
    reader.pane(identifier, 0);  // raises for a pane that is not there
    throw Error(kInvalidCall, "The pane has data at no angle.");
  }
  return angles;
}

std::shared_ptr<GlazingData> paneForFile(const RecordReader& reader, const std::string& identifier,
                                         std::int16_t angle, ExportForm form, Notes& notKept) {
  auto pane = reader.pane(identifier, angle);
  const std::string name = pane->filename();
  if (const auto others = reader.otherDirections(identifier, *pane); !others.empty()) {
    notKept.add(fmt::format("spectrum of direction {} at {} degrees", fmt::join(others, ", "),
                            pane->ORV_Angle()),
                name);
  }
  if (!hasIntegratedData(*pane)) pane->Precalc_Rfsol(0);  // files have no mark for that
  if (form != ExportForm::csv) reader.tellGroup(identifier, *pane);
  if (form == ExportForm::json) {
    // A product holds its substrate, a text file only the name of it.
    const std::string failure = reader.readReferences(identifier, pane);
    if (!failure.empty()) notKept.add("the files that it names: " + failure, name);
  }
  return pane;
}

ExportResult exportRecords(Session& session, const sources::RecordSelection& records,
                           const ExportOptions& options) {
  const RecordKind kind = requireExportable(records, options.form, false);
  return Export(session, records, options).run(records, kind);
}

}  // namespace orv::commands
