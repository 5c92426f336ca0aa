#include "app/EditCommands.h"

#include <QDir>
#include <QFileDialog>

#include "app/FailureSummary.h"
#include "app/Guarded.h"
#include "app/Pointers.h"
#include "app/Text.h"
#include "commands/CopyRecords.h"
#include "commands/DeleteRecords.h"
#include "commands/ExportRecords.h"
#include "commands/PasteRecords.h"

namespace orv::app {

namespace {

/// What an export did, for the message at its end.
std::string exportReport(const commands::ExportResult& result, const std::string& folder) {
  const QString written =
      EditCommands::tr("%1 written to %2.")
          .arg(counted(static_cast<qlonglong>(result.files.size()), "file"), qt(folder));
  if (result.filled.empty()) return written.toStdString();
  QStringList lines;
  for (const std::string& line : result.filled) lines << qt(line);
  return EditCommands::tr("%1\n\nFilled in, because a text file needs it:\n%2")
      .arg(written, lines.mid(0, 12).join('\n') + (lines.size() > 12 ? "\n..." : ""))
      .toStdString();
}

}  // namespace

EditCommands::EditCommands(commands::Session& session, WindowUserInterface& ui, QWidget& window)
    : session_(session), ui_(ui), window_(window), exportFolder_(QDir::homePath()) {}

void EditCommands::copy(const sources::RecordSelection& selection) {
  if (auto copied = commands::copyRecords(selection, ui_)) pending_ = std::move(*copied);
}

void EditCommands::paste(const Node& destination) {
  if (pending_.HasRecords()) transfer(pending_, destination);
}

void EditCommands::transfer(const sources::RecordSelection& records, const Node& destination) {
  run(tr("paste"), Effect::changesRecords, tr("These records could not be copied:"),
      [&] { commands::pasteRecords(session_, records, destination); });
}

void EditCommands::remove(const sources::RecordSelection& selection, const Node& shown) {
  if (!selection.HasRecords()) return;
  run(tr("deletion"), Effect::changesRecords, {},
      [&] { commands::deleteRecords(session_, selection, shown); });
}

void EditCommands::exportAsText(const sources::RecordSelection& selection) {
  const QString folder =
      QFileDialog::getExistingDirectory(&window_, tr("Folder for the text files"), exportFolder_);
  if (folder.isEmpty()) return;
  exportFolder_ = folder;
  run(tr("export"), Effect::readsRecords, tr("These records could not be exported:"), [&] {
    const auto result = commands::exportRecords(session_, selection, {folder.toStdString(), false});
    ui_.message(commands::MessageKind::information, exportReport(result, folder.toStdString()),
                commands::kProductName);
  });
}

void EditCommands::run(const QString& work, Effect effect, const QString& failureHeading,
                       const std::function<void()>& command) {
  emit workBegins();
  ui_.collectFailures(work);
  {
    const BusyPointer busy;
    guarded(ui_, command);
  }
  emit workEnded(effect == Effect::changesRecords);
  if (!ui_.failures().isEmpty()) FailureSummary(failureHeading, ui_.failures(), &window_).exec();
}

}  // namespace orv::app
