#pragma once

#include <QTreeWidget>
#include <vector>

#include "commands/RecordDetails.h"

namespace orv::app {

/// The fields of a record, or of several, grouped: a name, a value a record and a unit a row. Rows
/// can be searched, and selected rows copied as text.
class DetailsTree : public QTreeWidget {
  Q_OBJECT

 public:
  explicit DetailsTree(QWidget* parent = nullptr);

  /// Shows the fields of records of one kind in place of the former ones, a column a record, and
  /// marks where they differ; groups that the user closed stay closed. `titles` are those of the
  /// columns where they are several.
  void showFields(const QStringList& titles,
                  const std::vector<std::vector<commands::DetailField>>& records);
  /// Hides the rows in which several records are the same.
  void showOnlyDifferences(bool only);
  /// Hides the rows that have the text neither in their name nor in their value; letter case does
  /// not count. An empty text shows all.
  void setFilter(const QString& text);

  /// Takes the keyboard, on the first field that is shown.
  void focusFirst();

  /// The selected rows, or all that are shown, below the headings.
  QList<QStringList> rows(bool onlySelected) const;
  /// The same as text, a line a row, cells parted by tabs.
  QString text(bool onlySelected) const;
  void copy(bool onlySelected) const;

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  /// Where a field stands: which sections there are and which fields they have is not the same for
  /// all records.
  struct Row {
    QString section;
    QString name;
    QString unit;
    QStringList values;  ///< one a record; null for a record without the field
    bool differs() const;
  };
  static std::vector<Row> rowsOf(const std::vector<std::vector<commands::DetailField>>& records);
  void addRow(QTreeWidgetItem* section, const Row& row);
  void mark(QTreeWidgetItem& item) const;
  void showHeadings(const QStringList& titles);
  void placeValues();
  int unitColumn() const { return columnCount() - 1; }
  bool matches(const QTreeWidgetItem& item) const;
  void applyFilter();
  void fitNames();
  void placeNames();

  QString filter_;
  bool onlyDifferences_ = false;
  int wantedNames_ = 0;   ///< width of the names where there is room
  bool placing_ = false;  ///< the width is being changed, not by the user
  QString kind_;  ///< the first section of the fields, by which kinds of records are told apart
};

}  // namespace orv::app
