// Tables of the window for other programs.
#pragma once

#include <QList>
#include <QStringList>
#include <functional>
#include <vector>

class QWidget;

namespace orv::app {

/// Rows of cells, the headings first.
using TableRows = QList<QStringList>;

/// A table that can be saved.
struct TableChoice {
  QString title;  ///< "Selected rows"
  std::function<TableRows()> rows;
};

/// Asks for a file, which is called `name` unless the user calls it otherwise, and for one of the
/// tables, and writes that there, entirely or not at all: as CSV, or with tabs (`.tsv`); UTF-8,
/// lines end with CR LF, cells are quoted where they have to be. What fails is shown.
void saveTable(const std::vector<TableChoice>& tables, const QString& name, QWidget* window);
/// The same of one table.
void saveAsCsv(const TableRows& rows, const QString& name, QWidget* window);

}  // namespace orv::app
