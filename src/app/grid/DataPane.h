// What the main window shows of the selected data source.
#pragma once

#include <QPlainTextEdit>
#include <QWidget>
#include <functional>

#include "app/grid/GridPlace.h"
#include "commands/RecordView.h"

class QFrame;
class QLabel;
class QPushButton;

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

  /// How the table of a node's records is made, if not plainly.
  using TableMaker = std::function<std::unique_ptr<commands::RecordTable>(
      const std::shared_ptr<sources::datasource>&)>;
  void makeTablesBy(TableMaker maker) { makeTable_ = std::move(maker); }

  /// Shows a node, or that there is none. Fractions are shown with `digits` digits.
  void show(const std::shared_ptr<sources::datasource>& node, int digits);
  /// Shows the same node again, with its data as they are now.
  void reload(const std::shared_ptr<sources::datasource>& node, int digits,
              GridPlace::Selection selection);

 signals:
  /// The user wants to repair the database whose records cannot be read.
  void repairWanted();

 private:
  using ShowView = std::function<void(std::unique_ptr<commands::RecordView>)>;
  void showTitle(const std::shared_ptr<sources::datasource>& node);
  void showRecords(const std::shared_ptr<sources::datasource>& node, int digits,
                   const ShowView& show);
  void offerClearing();
  void showText(const QString& text, QPlainTextEdit::LineWrapMode wrap = QPlainTextEdit::NoWrap);
  void showNothing();

  TableMaker makeTable_ = commands::openRecordTable;
  QFrame* picTitles_;
  QLabel* lblTitle_;
  QWidget* records_;
  RecordGrid* grid_;
  FindBar* findBar_;
  QPlainTextEdit* DataSourceTextBox_;
  QPushButton* clearFilters_;  ///< under a grid that the filters leave empty
  QPushButton* repair_;        ///< under the text that says that the database is damaged
};

}  // namespace orv::app
