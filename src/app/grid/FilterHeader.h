// The header of the grid, with a row of filters under the titles.
#pragma once

#include <QHeaderView>
#include <QList>
#include <QStringList>
#include <vector>

#include "commands/RecordView.h"

class QLineEdit;

namespace orv::app {

/// Titles of columns; below each a field whose text the column is filtered by as it is typed.
class FilterHeader : public QHeaderView {
  Q_OBJECT

 public:
  explicit FilterHeader(QWidget* parent = nullptr);

  /// The filters' texts, one a column; empty while the row is hidden.
  QStringList filters() const;
  void clearFilters();
  /// Puts texts into the fields, one a column, and says nothing of it; missing ones are empty.
  void setFilters(const QStringList& texts);
  void showFilters(bool shown);
  /// The columns that the rows are sorted by: with arrows, and with numbers where they are several.
  void showOrder(const std::vector<commands::SortColumn>& order);
  bool showsFilters() const { return shown_; }
  /// The fields of the columns that are shown.
  QList<QLineEdit*> shownEditors() const;
  /// Puts the keyboard into the filter of a column.
  void editFilter(int column);

  QSize sizeHint() const override;
  void setModel(QAbstractItemModel* model) override;
  /// Places the fields under their columns; to be called after horizontal scrolling too.
  void placeEditors();
  /// Draws the heading of a column at the left edge, with the room for its field.
  void drawHeading(QPainter& painter, int column) const;
  /// Has the field of a column stay in this width at the left edge, before the others; -1 for none.
  void keepEditor(int column, int width);

 signals:
  void filtersChanged();
  /// The user wants to go from the filters to the rows.
  void rowsWanted();

 protected:
  /// The arrow of a sorted column goes up where the values do.
  void initStyleOptionForIndex(QStyleOptionHeader* option, int logicalIndex) const override;
  void updateGeometries() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void makeEditors();
  int editorHeight() const;

  QStringList titles_;  ///< of the columns that the editors belong to
  QList<QLineEdit*> editors_;
  bool shown_ = true;
  int kept_ = -1;  ///< the column whose field stays
  int keptWidth_ = 0;
  std::vector<commands::SortColumn> order_;
};

}  // namespace orv::app
