#include "app/dialogs/SaveDialog.h"

#include <QFileDialog>
#include <QRegularExpression>

#include "app/dialogs/DialogFolders.h"

namespace orv::app {

namespace {

/// "csv" of "Tables (*.csv)".
QString suffixOf(const QString& filter) {
  return filter.section("*.", -1).section(')', 0, 0);
}

/// What file systems do not take becomes "_".
QString fileName(QString text) {
  static const QRegularExpression untaken(R"([/\\:*?"<>|\x00-\x1f])");
  return text.replace(untaken, "_");
}

}  // namespace

SaveChoice askWhereToSave(const SaveQuestion& question, QWidget* window) {
  QFileDialog dialog(window, question.title, dialogFolder(question.title));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilters(question.filters);
  const auto follow = [&](const QString& filter) { dialog.setDefaultSuffix(suffixOf(filter)); };
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, follow);
  follow(question.filters.constFirst());
  dialog.selectFile(fileName(question.name) + '.' + suffixOf(question.filters.constFirst()));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  const QString path = dialog.selectedFiles().constFirst();
  rememberDialogFolder(question.title, QFileInfo(path).absolutePath());
  return {path, static_cast<int>(question.filters.indexOf(dialog.selectedNameFilter()))};
}

}  // namespace orv::app
