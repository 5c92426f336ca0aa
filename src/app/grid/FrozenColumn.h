// The first column of the grid, which stands still.
#pragma once

#include <QObject>

class QWidget;

namespace orv::app {

class RecordGrid;

/// Keeps the first column of a grid in sight while the others scroll: as far as it would be
/// scrolled away it is drawn over them. What the mouse does there, it does to the column.
class FrozenColumn : public QObject {
  Q_OBJECT

 public:
  explicit FrozenColumn(RecordGrid& grid);

  void freeze(bool frozen);
  /// The column that stands still over others; -1 while none does.
  int column() const;
  /// How much of the grid it covers, in pixels.
  int width() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  int firstColumn() const;
  void place();

  RecordGrid& grid_;
  bool frozen_ = false;
  QWidget* cells_;
  QWidget* heading_;
};

}  // namespace orv::app
