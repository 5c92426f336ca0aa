#include "app/grid/FieldBlock.h"

#include <algorithm>

#include "app/Text.h"
#include "app/grid/RecordGrid.h"
#include "commands/RecordReader.h"
#include "commands/edit/CsvTable.h"
#include "errors/Error.h"

namespace orv::app {

using commands::edit::CsvRows;

namespace {

[[noreturn]] void refuseBlock(const QString& reason) {
  throw Error(kInvalidCall, reason.toStdString());
}

class BlockPlacing {
 public:
  BlockPlacing(RecordGrid& grid, const QString& text)
      : records_(grid.records()),
        cells_(commands::edit::readCsv(text.toStdString(), '\t', commands::edit::EmptyLines::kept)),
        rows_(grid.selectedRows()),
        shown_(grid.visibleColumns()) {
    const QModelIndex current = grid.currentIndex();
    if (!current.isValid())
      refuseBlock(RecordGrid::tr("Choose the field first where it is to begin."));
    if (cells_.empty()) refuseBlock(RecordGrid::tr("There is no text on the clipboard."));
    if (current.row() < rows_.low || current.row() > rows_.high) {
      rows_ = {current.row(), current.row()};
    }
    placeColumns(static_cast<int>(shown_.indexOf(current.column())));
    passOverHeadings();
    placeRows();
  }

  BlockPlan plan() {
    BlockPlan plan{.changes = {}, .hidden = hidden()};
    for (int row = rows_.low; row <= rows_.high; ++row) {
      const auto line = cells_.size() == 1 ? 0U : static_cast<std::size_t>(row - rows_.low);
      for (std::size_t i = 0; i < cells_[line].size(); ++i) {
        add(plan.changes, row, columns_[static_cast<int>(i)], cells_[line][i]);
      }
    }
    return plan;
  }

 private:
  void placeColumns(int first) {
    const auto count =
        static_cast<int>(std::ranges::max(cells_, {}, &CsvRows::value_type::size).size());
    columns_ = shown_.mid(first, count);
    if (columns_.size() == count) return;
    refuseBlock(RecordGrid::tr("The text has %1, but from the column %2 on only %L3 are shown: %4.")
                    .arg(counted(count, RecordGrid::tr("column")), titles(columns_).constFirst())
                    .arg(columns_.size())
                    .arg(titles(columns_).join(", ")));
  }

  void passOverHeadings() {
    if (cells_.size() == 1) return;
    QStringList first;
    for (const std::string& cell : cells_.front()) first << qt(cell);
    if (first == titles(columns_)) cells_.erase(cells_.begin());
  }

  void placeRows() {
    const auto count = static_cast<int>(cells_.size());
    if (count == 1) return;
    records_.readOn();
    const int there = records_.rowCount() - rows_.low;
    if (count > there) {
      refuseBlock(RecordGrid::tr("The text has %1, but from row %L2 (%3) on there are only %L4.")
                      .arg(counted(count, RecordGrid::tr("row")))
                      .arg(rows_.low + 1)
                      .arg(records_.recordName(rows_.low))
                      .arg(there));
    }
    rows_.high = rows_.low + count - 1;
  }

  void add(ChangePlan& plan, int row, int column, const std::string& text) {
    const auto cell = [&](bool asShown) {
      return records_.cells(row, row, {column}, asShown)[0][0];
    };
    if (qt(text) == cell(true) || qt(text) == cell(false)) return;
    const auto* field = records_.editField(column);
    if (field == nullptr) {
      refuseBlock(
          RecordGrid::tr("Row %L1 (%2): the column %3 cannot be edited, and the text would "
                         "make \"%4\" of \"%5\".")
              .arg(row + 1)
              .arg(records_.recordName(row), titles({column}).constFirst(), qt(text), cell(false)));
    }
    plan.push_back({.typed = {commands::recordNumber(records_.identifier(row)), {field, {}}, text},
                    .name = records_.recordName(row).toStdString(),
                    .before = records_.fieldText(row, column).toStdString()});
  }

  QStringList hidden() const {
    if (columns_.size() < 2) return {};
    QList<int> passed;
    for (int column = 0; column < records_.columnCount(); ++column) {
      const bool isAmid = column > columns_.constFirst() && column < columns_.constLast();
      if (isAmid && !shown_.contains(column)) passed << column;
    }
    return titles(passed);
  }

  QStringList titles(const QList<int>& columns) const { return records_.headings(columns); }

  RecordModel& records_;
  CsvRows cells_;
  RecordGrid::RowBlock rows_;
  QList<int> shown_;
  QList<int> columns_;  ///< of the cells
};

}  // namespace

BlockPlan planOfBlock(RecordGrid& grid, const QString& text) {
  return BlockPlacing(grid, text).plan();
}

}  // namespace orv::app
