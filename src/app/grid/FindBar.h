// Searching the grid.
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;

namespace orv::app {

class RecordGrid;

/// A line under the grid that finds a text in any field of the rows shown.
class FindBar : public QWidget {
  Q_OBJECT

 public:
  explicit FindBar(RecordGrid& grid, QWidget* parent = nullptr);

  /// Shows itself and takes the keyboard.
  void open();
  void close();
  void findNext();
  void findPrevious();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// `includingCurrent`: the current field may be the one found, as while the text is typed.
  void find(bool forward, bool includingCurrent);

  RecordGrid& grid_;
  QLineEdit* text_;
  QLabel* result_;
};

}  // namespace orv::app
