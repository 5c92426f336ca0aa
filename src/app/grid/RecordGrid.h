// The grid of records.
#pragma once

#include <QTableView>
#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "app/grid/ColumnLayout.h"
#include "app/grid/GridPlace.h"
#include "app/grid/RecordModel.h"
#include "app/grid/RowOrder.h"

class QMenu;

namespace orv::app {

class CellDelegate;
class FilterHeader;
class FrozenColumn;
class RecordEdits;

/// Rows of which one block can be selected. Column widths, order and choice are kept, for the run,
/// for each kind of record set.
class RecordGrid : public QTableView {
  Q_OBJECT

 public:
  explicit RecordGrid(QWidget* parent = nullptr);

  struct RowBlock {
    int low = -1;
    int high = -1;
    bool isEmpty() const { return low < 0; }
    int count() const { return isEmpty() ? 0 : high - low + 1; }
  };

  RecordModel& records() { return *model_; }
  const RecordModel& records() const { return *model_; }
  FilterHeader& filterHeader() const { return *header_; }

  /// Replaces what is shown. `kind` tells whose column layout to use, `key` which record set it is:
  /// one that was shown before is found as it was left, but with nothing selected. Raises what
  /// reading raises.
  void show(std::unique_ptr<commands::RecordView> view, int kind, const std::string& key);
  /// Replaces the records by those of the same record set, read anew. Filters, order, columns and
  /// the place in the grid stay.
  void reload(std::unique_ptr<commands::RecordView> view, GridPlace::Selection selection);
  /// Shows fractions with so many digits.
  void digits(int value);
  void clear();
  /// Fills the columns that take long, and then filters and sorts again. Escape stops it.
  void fillColumns() { model_->fill(); }

  RowBlock selectedRows() const;
  void selectRows(const RowBlock& rows);
  /// Selects without a change of the current row or of what is in sight.
  void selectBlock(const RowBlock& rows);
  /// What people call the first of the selected records, parted by commas.
  QString selectedNames() const;
  /// The column that the sort commands work on: that of the cell or heading that the user chose
  /// last; -1 before.
  int selectedColumn() const { return selectedColumn_; }
  void sort(Qt::SortOrder order);
  /// Puts the visible columns of the selected rows, under their headings, or the current cell, on
  /// the clipboard.
  void copyRowsAsText() const;
  void copyCellAsText() const;
  /// Whether fields are copied and saved as they are shown, or with all their digits.
  void copyAsShown(bool asShown) { copiesAsShown_ = asShown; }
  /// The visible columns of all rows that pass the filters, or of those that are selected, the
  /// headings first. Raises what reading raises.
  QList<QStringList> wholeTable();
  QList<QStringList> selectedTable() const { return table(selectedRows()); }
  void fitColumns();
  /// Adds to a menu what can be done with a column.
  void addColumnCommands(QMenu& menu, int column);
  /// In the order in which the user sees them.
  QList<int> visibleColumns() const;

  /// Has cells be edited, each or all selected ones of a column at once; null where they cannot
  /// be, and `whyNot` is told then.
  void editBy(RecordEdits* edits, const QString& whyNot);
  const QString& whyNotEdited() const { return whyNotEdited_; }
  /// Ends the editing of a cell with what has been typed; false when that is refused.
  bool finishEditing();
  void editCurrent();

  /// Has the first column stand still while the others scroll.
  void freezeFirstColumn(bool frozen);
  /// Draws the cells in sight of a column, at the left edge.
  void drawColumn(QPainter& painter, int column) const;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

 signals:
  /// What there is to say of the editing of a cell.
  void editingTold(const QString& text);
  void selectedRowsChanged();
  /// A record was clicked on twice, on a cell that cannot be edited.
  void detailsWanted();
  void columnChooserWanted();
  void contextMenuWanted(const QPoint& globalPosition);
  /// What is done to the columns that take long, for the status bar.
  void fillingTold(const QString& text);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  /// Beside the last column, too, a row is its own.
  QModelIndex indexAt(const QPoint& position) const override;
  void startDrag(Qt::DropActions actions) override;
  void scrollContentsBy(int dx, int dy) override;
  using QTableView::edit;
  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

 private:
  /// How a record set was left.
  struct Left {
    std::map<std::string, QString> filters;  ///< by the names of their columns
    std::vector<std::pair<std::string, commands::SortColumn>> order;  ///< likewise
    GridPlace place;
  };

  QModelIndex fieldBeside(const QModelIndex& cell, bool after) const;
  /// Brings a text into a cell, or into its column of all selected rows when it is of one of them.
  /// Says why not, or nothing.
  QString take(const QModelIndex& cell, const QString& before, const QString& text);
  void rememberLayout();
  void rememberLeft();
  void findAsLeft();
  int columnNamed(const std::string& name) const;
  /// Changes the rows, and goes to the user's place among the new ones.
  void keepPlace(const std::function<void()>& change,
                 GridPlace::Selection selection = GridPlace::Selection::kept);
  void extendToEnd(bool forward);
  void tellFilling(qlonglong rows, bool ended);
  /// Filters and sorts as the header says.
  void arrange();
  void sortBy(RowOrder::Columns order);
  void sortByHeader(int column);
  /// Puts a column a place to the left or right, past those that are hidden.
  void moveColumn(int column, int step);
  void readNumbers(int column, bool reads);
  void headerMenu(const QPoint& position);
  /// The visible columns of rows, the headings first.
  QList<QStringList> table(const RowBlock& rows) const;

  RecordModel* model_;
  FilterHeader* header_;
  FrozenColumn* frozen_;
  CellDelegate* cells_;
  RowOrder order_;
  QString whyNotEdited_;
  int kind_ = -1;
  std::string key_;
  bool isPlacing_ = false;
  bool copiesAsShown_ = false;
  int selectedColumn_ = -1;
  QList<int> fittedWidths_;
  std::map<int, ColumnLayout> layouts_;
  std::map<std::string, Left> left_;  ///< by the keys of record sets
};

}  // namespace orv::app
