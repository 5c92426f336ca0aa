#include "app/grid/GridPlace.h"

#include <QHeaderView>
#include <QScrollBar>
#include <algorithm>

#include "app/grid/RecordGrid.h"

namespace orv::app {

namespace {

/// The rows around one of them, without a gap; those around the first where it is not among them.
RecordGrid::RowBlock blockAround(const std::vector<int>& rows, int row) {
  if (rows.empty()) return {};
  auto first = std::ranges::find(rows, row);
  if (first == rows.end()) first = rows.begin();
  auto last = first;
  while (first != rows.begin() && *std::prev(first) == *first - 1) --first;
  while (std::next(last) != rows.end() && *std::next(last) == *last + 1) ++last;
  return {*first, *last};
}

}  // namespace

GridPlace::GridPlace(const RecordGrid& grid) : scrolled_(grid.verticalScrollBar()->value()) {
  const RecordModel& records = grid.records();
  const RecordGrid::RowBlock rows = grid.selectedRows();
  low_ = rows.low;
  for (int i = 0; i < rows.count(); ++i) selected_.push_back(records.identifier(rows.low + i));
  if (!rows.isEmpty() && rows.high + 1 < records.rowCount()) {
    next_ = records.identifier(rows.high + 1);
  }
  const QModelIndex current = grid.currentIndex();
  if (!current.isValid()) return;
  current_ = records.identifier(current.row());
  currentRow_ = current.row();
  column_ = current.column();
  const int offset = grid.rowViewportPosition(current.row());
  if (offset >= 0 && offset < grid.viewport()->height()) offset_ = offset;
}

int GridPlace::currentRowIn(RecordGrid& grid, Selection selection) const {
  const bool isKept = selection != Selection::deleted || selected_.empty();
  const std::string& wanted = isKept ? current_ : next_;
  const int former = isKept ? currentRow_ : low_;
  if (former < 0) return -1;
  if (wanted.empty()) return std::min(former, grid.records().rowCount() - 1);
  const auto rows = grid.records().rowsOf({wanted}, former);
  return rows.empty() ? std::min(former, grid.records().rowCount() - 1) : rows.front();
}

void GridPlace::restore(RecordGrid& grid, Selection selection) const {
  const int row = currentRowIn(grid, selection);
  if (row >= 0) {
    const int column = std::min(column_, grid.records().columnCount() - 1);
    grid.selectionModel()->setCurrentIndex(grid.records().index(row, column),
                                           QItemSelectionModel::NoUpdate);
  }
  if (selection == Selection::kept && !selected_.empty()) {
    grid.selectBlock(blockAround(grid.records().rowsOf(selected_, low_), row));
  }
  const int top =
      row >= 0 && offset_ ? grid.verticalHeader()->sectionPosition(row) - *offset_ : scrolled_;
  grid.verticalScrollBar()->setValue(top);
}

}  // namespace orv::app
