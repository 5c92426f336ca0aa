#include "app/dialogs/SaveDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QMap>

namespace orv::app {

namespace {

/// "csv" of "Tables (*.csv)".
QString suffixOf(const QString& filter) {
  return filter.section("*.", -1).section(')', 0, 0);
}

}  // namespace

SaveChoice askWhereToSave(const SaveQuestion& question, QWidget* window) {
  static QMap<QString, QString> folders;  // by title
  QString& folder = folders[question.title];
  QFileDialog dialog(window, question.title, folder.isEmpty() ? QDir::homePath() : folder);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilters(question.filters);
  const auto follow = [&](const QString& filter) { dialog.setDefaultSuffix(suffixOf(filter)); };
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, follow);
  follow(question.filters.constFirst());
  dialog.selectFile(question.name + '.' + suffixOf(question.filters.constFirst()));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  const QString path = dialog.selectedFiles().constFirst();
  folder = QFileInfo(path).absolutePath();
  return {path, static_cast<int>(question.filters.indexOf(dialog.selectedNameFilter()))};
}

}  // namespace orv::app
