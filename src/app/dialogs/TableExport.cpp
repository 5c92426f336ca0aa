#include "app/dialogs/TableExport.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QSaveFile>
#include <algorithm>

#include "app/Text.h"
#include "app/dialogs/SaveDialog.h"
#include "commands/CsvText.h"
#include "commands/UserInterface.h"

namespace orv::app {

namespace {

QByteArray separated(const TableRows& rows, char separator) {
  std::string text;
  for (const QStringList& row : rows) {
    for (qsizetype i = 0; i < row.size(); ++i) {
      if (i > 0) text += separator;
      text += commands::separatedCell(row[i].toStdString(), separator);
    }
    text += "\r\n";
  }
  return QByteArray::fromStdString(text);
}

QString translated(const char* text) {
  return QCoreApplication::translate("TableExport", text);
}

}  // namespace

void saveTable(const std::vector<TableChoice>& tables, const QString& name, QWidget* window) {
  QStringList filters;
  for (const TableChoice& table : tables) {
    filters << translated("%1 (*.csv)").arg(table.title)
            << translated("%1, with tabs (*.tsv)").arg(table.title);
  }
  const auto [path, filter] = askWhereToSave({translated("Save Table"), name, filters}, window);
  if (path.isEmpty()) return;
  QSaveFile file(path);
  const char separator = path.endsWith(".tsv", Qt::CaseInsensitive) ? '\t' : ',';
  const std::size_t chosen = static_cast<std::size_t>(std::max(filter, 0)) / 2;
  const QByteArray text = separated(tables[chosen].rows(), separator);
  if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit()) return;
  QMessageBox::critical(window, qt(commands::kProductName),
                        translated("%1\n\nThe file \"%2\" could not be written.")
                            .arg(file.errorString(), file.fileName()));
}

void saveAsCsv(const TableRows& rows, const QString& name, QWidget* window) {
  saveTable({{translated("Table"), [&] { return rows; }}}, name, window);
}

}  // namespace orv::app
