// Which columns the grid shows.
#pragma once

#include <QDialog>

class QLineEdit;
class QListWidget;

namespace orv::app {

class RecordGrid;

/// Lists the columns with check boxes, and finds them by a part of their titles. What is checked
/// is shown at once.
class ColumnChooser : public QDialog {
  Q_OBJECT

 public:
  ColumnChooser(RecordGrid& grid, QWidget* parent);

 private:
  void fill();
  void search(const QString& text);
  void showAll(bool shown);
  void apply();

  RecordGrid& grid_;
  QLineEdit* search_;
  QListWidget* list_;
};

}  // namespace orv::app
