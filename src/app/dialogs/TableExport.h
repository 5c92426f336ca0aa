// Tables of the window for other programs.
#pragma once

#include <QList>
#include <QStringList>

class QWidget;

namespace orv::app {

/// Rows of cells, the headings first.
using TableRows = QList<QStringList>;

/// The text of a CSV file: UTF-8, lines end with CR LF, cells are quoted where they have to be.
QByteArray csvOf(const TableRows& rows);

/// Asks for a file, which is called `name` unless the user calls it otherwise, and writes the rows
/// there as CSV, entirely or not at all. What fails is shown.
void saveAsCsv(const TableRows& rows, const QString& name, QWidget* window);

}  // namespace orv::app
