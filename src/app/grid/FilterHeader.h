// The header of the grid, with a row of filters under the titles.
#pragma once

#include <QHeaderView>
#include <QList>
#include <QStringList>

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
  void showFilters(bool shown);
  bool showsFilters() const { return shown_; }
  /// Puts the keyboard into the filter of a column.
  void editFilter(int column);

  QSize sizeHint() const override;
  void setModel(QAbstractItemModel* model) override;
  /// Places the fields under their columns; to be called after horizontal scrolling too.
  void placeEditors();

 signals:
  void filtersChanged();
  /// The user wants to go from the filters to the rows.
  void rowsWanted();

 protected:
  void updateGeometries() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void makeEditors();
  int editorHeight() const;

  QStringList titles_;  ///< of the columns that the editors belong to
  QList<QLineEdit*> editors_;
  bool shown_ = true;
};

}  // namespace orv::app
