// The lines of a dock with a list.
#pragma once

#include <QTreeWidget>

#include "app/dialogs/TableExport.h"

namespace orv::app {

/// Lines of cells, which may have lines below them: those are the rows for other programs then, and
/// not their heading.
class ListTree : public QTreeWidget {
  Q_OBJECT

 public:
  ListTree(const char* name, const QString& accessibleName, const QString& help,
           const QStringList& titles, QWidget* parent = nullptr);

  /// The rows that are shown, or that are selected by themselves or with their heading; the
  /// headings of the columns first.
  TableRows shownRows() const { return rows(false); }
  TableRows selectedRows() const { return rows(true); }
  /// Makes the columns as wide as their cells, and none wider than so many characters.
  void fitColumns(int mostCharacters);

 signals:
  /// A line was clicked on, or moved to with the keyboard.
  void lineChosen(QTreeWidgetItem* line);

 protected:
  /// A line for other programs; without more, its cells under the titles of the columns.
  virtual QStringList headings() const;
  virtual QStringList rowOf(const QTreeWidgetItem& line) const;

  void keyPressEvent(QKeyEvent* event) override;

 private:
  TableRows rows(bool onlySelected) const;
};

}  // namespace orv::app
