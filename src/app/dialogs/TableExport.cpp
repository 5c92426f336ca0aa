#include "app/dialogs/TableExport.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QSaveFile>

#include "app/Text.h"
#include "commands/CsvText.h"
#include "commands/UserInterface.h"

namespace orv::app {

QByteArray csvOf(const TableRows& rows) {
  std::string text;
  for (const QStringList& row : rows) {
    for (qsizetype i = 0; i < row.size(); ++i) {
      if (i > 0) text += ',';
      text += commands::csvCell(row[i].toStdString());
    }
    text += "\r\n";
  }
  return QByteArray::fromStdString(text);
}

void saveAsCsv(const TableRows& rows, const QString& name, QWidget* window) {
  const auto tr = [](const char* text) { return QCoreApplication::translate("TableExport", text); };
  QFileDialog dialog(window, tr("Save as CSV"), QString(), tr("Tables (*.csv)"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix("csv");
  dialog.selectFile(name + ".csv");
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
  QSaveFile file(dialog.selectedFiles().constFirst());
  const QByteArray text = csvOf(rows);
  if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit()) return;
  QMessageBox::critical(
      window, qt(commands::kProductName),
      tr("%1\n\nThe file \"%2\" could not be written.").arg(file.errorString(), file.fileName()));
}

}  // namespace orv::app
