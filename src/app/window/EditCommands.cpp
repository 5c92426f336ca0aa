#include "app/window/EditCommands.h"

#include <QFileDialog>
#include <filesystem>

#include "app/Pointers.h"
#include "app/Text.h"
#include "app/dialogs/DialogFolders.h"
#include "app/dialogs/IntegrationDialog.h"
#include "app/dialogs/ReportDialog.h"
#include "app/dialogs/SaveDialog.h"
#include "app/window/Guarded.h"
#include "app/window/SuggestedName.h"
#include "commands/CopyRecords.h"
#include "commands/DeleteRecords.h"
#include "commands/ExportRecords.h"
#include "commands/RecordKind.h"
#include "commands/Remarks.h"
#include "commands/audit/Audit.h"

namespace orv::app {

namespace {

/// Adds all notes under a heading.
void addNotes(QStringList& report, const QString& heading, const commands::Notes& notes) {
  if (notes.list().empty()) return;
  QStringList lines{heading};
  for (const commands::Note& note : notes.list()) lines << shownText(note.line());
  report << lines.join('\n');
}

}  // namespace

EditCommands::EditCommands(commands::Session& session, WindowUserInterface& ui, QWidget& window)
    : session_(session), ui_(ui), window_(window) {}

void EditCommands::copy(const sources::RecordSelection& selection) {
  if (auto copied = commands::copyRecords(selection, ui_)) pending_ = std::move(*copied);
}

void EditCommands::paste(const Node& destination) {
  if (pending_.HasRecords()) transfer(pending_, destination);
}

void EditCommands::transfer(const sources::RecordSelection& records, const Node& destination) {
  run(tr("paste"), WorkEffect::changesRecords, tr("These records could not be copied:"), [&] {
    const auto result = commands::pasteRecords(session_, records, destination, pasteOptions_);
    addNotes(report_, tr("What became of the records:"), result.notes);
    addNotes(report_, tr("Not given by the source, 0 is stored:"), result.zeros);
    addNotes(report_, tr("Not kept, since an ORV database has no place for it:"), result.notKept);
    for (const std::string& line : commands::remarks(session_)) report_ << shownText(line);
    if (!result.refused) emit finished(qt(result.summary(true)), ui_.failures() + report_);
  });
}

void EditCommands::remove(const sources::RecordSelection& selection, const Node& shown,
                          const QString& names) {
  if (!selection.HasRecords()) return;
  if (commands::askToDelete(session_, selection, shown, names.toStdString()).isStopped()) return;
  run(tr("deletion"), WorkEffect::deletesRecords, {},
      [&] { emit finished(qt(commands::deleteAskedFor(session_, selection).summary(true)), {}); });
}

void EditCommands::exportRecords(const sources::RecordSelection& selection) {
  const auto kind = commands::recordKind(*selection.DataSourcePtr());
  dlgExport::Choice choice;  // shadings have text files only
  if (kind == commands::RecordKind::panes) {
    const auto chosen = dlgExport(exportChoice_, &window_).choose();
    if (!chosen) return;
    choice = exportChoice_ = *chosen;
  }
  choice.isJoined ? exportToFile(selection, choice.form) : exportToFolder(selection, choice.form);
}

void EditCommands::exportToFolder(const sources::RecordSelection& selection,
                                  commands::ExportForm form) {
  const QString title = tr("Folder for the files");
  const QString folder = QFileDialog::getExistingDirectory(&window_, title, dialogFolder(title));
  if (folder.isEmpty()) return;
  rememberDialogFolder(title, folder);
  run(tr("export"), WorkEffect::readsRecords, tr("These records could not be exported:"), [&] {
    const auto result =
        commands::exportRecords(session_, selection, {folder.toStdString(), false, form});
    const QString files = counted(static_cast<qlonglong>(result.files.size()), "file");
    tellExport(result, tr("%1 written to %2.").arg(files, shownText(folder)));
  });
}

void EditCommands::exportToFile(const sources::RecordSelection& selection,
                                commands::ExportForm form) {
  const bool isJson = form == commands::ExportForm::json;
  const QString path = askWhereToSave({tr("File for the records"),
                                       suggestedName(*selection.DataSourcePtr()),
                                       {isJson ? tr("Products (*.json)") : tr("Tables (*.csv)")}},
                                      &window_)
                           .path;
  if (path.isEmpty()) return;
  run(tr("export"), WorkEffect::readsRecords, tr("These records could not be exported:"), [&] {
    const auto result = commands::exportJoined(session_, selection, form);
    if (result.text.empty()) return;
    commands::writeJoined(path.toStdString(), result.text, true);
    const QString panes = counted(static_cast<qlonglong>(result.dataSets), "pane");
    tellExport(result, tr("%1 written to %2.").arg(panes, shownText(path)));
  });
}

template <class Result>
void EditCommands::tellExport(const Result& result, const QString& written) {
  QStringList report;
  addNotes(report, tr("Filled in, because a text file needs it:"), result.filled);
  addNotes(report, tr("Not kept, since the file has no place for it:"), result.notKept);
  const OrdinaryPointer pointer;
  if (report.isEmpty()) {
    ui_.message(commands::MessageKind::information, written.toStdString(), commands::kProductName);
  } else {
    ReportDialog(tr("Exported Records"), written, report, {}, &window_).exec();
  }
}

void EditCommands::computeValues(const sources::RecordSelection& selection,
                                 optics::Standard standard) {
  const auto rehearse = [&](commands::IntegrationOptions options) {
    options.rehearses = true;
    std::optional<IntegrationDialog::Rows> rows{std::in_place};
    const auto result = commands::integrateRecords(
        session_, selection, options,
        [&](const commands::IntegratedRow& row) { rows->push_back(row); });
    return result.cancelled ? std::nullopt : std::move(rows);
  };
  IntegrationDialog dialog(rehearse, standard, &window_);
  if (dialog.rehearse() && dialog.exec() == QDialog::Accepted) {
    storeValues(selection, dialog.options());
  }
}

void EditCommands::storeValues(const sources::RecordSelection& selection,
                               const commands::IntegrationOptions& options) {
  run(tr("computation"), WorkEffect::changesRecords, {}, [&] {
    QStringList left;
    commands::IntegrationOptions storing = options;
    storing.stores = true;
    const auto result = commands::integrateRecords(
        session_, selection, storing, [&](const commands::IntegratedRow& row) {
          const QString note = shownText(row.note());
          if (note.isEmpty()) return;
          left << tr("%1, %2°: %3").arg(shownText(row.name), QString::number(row.angle), note);
        });
    if (!left.isEmpty())
      report_ << tr("What is to be known of the values:") + '\n' + left.join('\n');
    if (!result.refused) emit finished(qt(result.summary(options.standard)), report_);
  });
}

void EditCommands::follow(const Node& closed, const Node& opened) {
  const Node node = pending_.DataSourcePtr();
  if (!node || node->Parent() != closed) return;
  for (const Node& each : opened->DataSources()) {
    if (each->DataType() == node->DataType()) pending_.DataSourcePtr(each);
  }
}

void EditCommands::audit(const Node& source, const sources::RecordSelection& selection) {
  run(tr("audit"), WorkEffect::readsRecords, {}, [&] {
    Findings findings;
    const commands::audit::EachFinding keep = [&](const commands::audit::Finding& finding) {
      findings.push_back(finding);
    };
    const auto result =
        selection.HasRecords()
            ? commands::audit::auditRecords(session_, selection, {}, keep)
            : commands::audit::auditSource(session_, source, std::nullopt, {}, keep);
    const auto name = std::filesystem::path(source->text()).filename().string();
    emit audited(source->key(), findings, tr("%1: %2").arg(shownText(name), qt(result.summary())));
  });
}

void EditCommands::run(const QString& work, WorkEffect effect, const QString& failureHeading,
                       const std::function<void()>& command) {
  emit workBegins();
  ui_.collectFailures(work);
  report_.clear();
  {
    const BusyPointer busy;
    guarded(ui_, command);
  }
  emit workEnded(effect);
  if (ui_.failures().isEmpty()) return;
  ReportDialog(tr("Failed Records"), failureHeading, ui_.failures() + report_, {}, &window_).exec();
}

}  // namespace orv::app

#include "moc_EditCommands.cpp"
