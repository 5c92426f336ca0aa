// What the main window shows of the selected data source.
#pragma once

#include <QWidget>

#include "sources/datasource.h"

class QFrame;
class QLabel;
class QPlainTextEdit;

namespace orv::app {

class FindBar;
class RecordGrid;

/// A strip with the title of the source; under it the grid of its records, or its text.
class DataPane : public QWidget {
  Q_OBJECT

 public:
  explicit DataPane(QWidget* parent = nullptr);

  RecordGrid& grid() { return *grid_; }
  FindBar& findBar() { return *findBar_; }
  bool showsRecords() const;

  /// Shows a node, or that there is none. Fractions are shown with `digits` digits.
  void show(const std::shared_ptr<sources::datasource>& node, int digits);
  /// Shows the same node again, with its data as they are now.
  void reload(const std::shared_ptr<sources::datasource>& node, int digits);

 private:
  void showRecords(const std::shared_ptr<sources::datasource>& node, int digits, bool again);
  void showText(const QString& text);
  void showNothing();

  QFrame* picTitles_;
  QLabel* lblTitle_;
  QWidget* records_;
  RecordGrid* grid_;
  FindBar* findBar_;
  QPlainTextEdit* DataSourceTextBox_;
};

}  // namespace orv::app
