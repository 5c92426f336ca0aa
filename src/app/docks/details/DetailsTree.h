#pragma once

#include <QTreeWidget>
#include <vector>

#include "commands/RecordDetails.h"

namespace orv::app {

/// The fields of a record, grouped: a name, a value and a unit a row. Rows can be searched, and
/// selected rows copied as text.
class DetailsTree : public QTreeWidget {
  Q_OBJECT

 public:
  explicit DetailsTree(QWidget* parent = nullptr);

  /// Shows fields in place of the former ones; groups that the user closed stay closed.
  void showFields(const std::vector<commands::DetailField>& fields);
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
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void applyFilter();
  void fitNames();
  void placeNames();

  QString filter_;
  int wantedNames_ = 0;   ///< width of the names where there is room
  bool placing_ = false;  ///< the width is being changed, not by the user
  QString kind_;  ///< the first section of the fields, by which kinds of records are told apart
};

}  // namespace orv::app
