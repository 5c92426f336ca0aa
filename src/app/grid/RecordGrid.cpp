#include "app/grid/RecordGrid.h"

#include <QClipboard>
#include <QDrag>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include "app/Pointers.h"
#include "app/Text.h"
#include "app/grid/CellDelegate.h"
#include "app/grid/FilterHeader.h"
#include "app/grid/RecordEdits.h"
#include "commands/ErrorText.h"
#include "commands/RecordReader.h"

namespace orv::app {

namespace {

constexpr int kWidestInCharacters = 34;
constexpr int kNarrowestInCharacters = 8;
/// Rows that columns are fitted to; all would have to be read.
constexpr int kRowsToFit = 100;

/// A small label that goes with the pointer.
QPixmap dragLabel(const QString& text, const QWidget& widget) {
  const QFontMetrics metrics = widget.fontMetrics();
  const QSize size(metrics.horizontalAdvance(text) + 16, metrics.height() + 8);
  QPixmap pixmap(size * widget.devicePixelRatioF());
  pixmap.setDevicePixelRatio(widget.devicePixelRatioF());
  pixmap.fill(widget.palette().color(QPalette::Highlight));
  QPainter painter(&pixmap);
  painter.setFont(widget.font());
  painter.setPen(widget.palette().color(QPalette::HighlightedText));
  painter.drawText(QRect(QPoint(0, 0), size), Qt::AlignCenter, text);
  return pixmap;
}

/// A value that would break a table of tabs and lines is put in quotation marks, as spreadsheets
/// have it.
QString tableText(QString text) {
  if (!text.contains('\t') && !text.contains('\n') && !text.startsWith('"')) return text;
  return '"' + text.replace('"', "\"\"") + '"';
}

}  // namespace

RecordGrid::RecordGrid(QWidget* parent)
    : QTableView(parent),
      model_(new RecordModel(this)),
      header_(new FilterHeader(this)),
      cells_(new CellDelegate(*this, *model_, [this](const QModelIndex& cell, const QString& text) {
        return take(cell, text);
      })) {
  setObjectName("RecordGrid");
  setAccessibleName(tr("Records"));
  setWhatsThis(tr(
      "<p>The records of the data source, the column that identifies them first. One block of "
      "rows can be selected, with Shift and a click or the arrows, to be copied, deleted or "
      "exported, or dragged to a data source on the left.</p><p>A click on a heading sorts; "
      "drag headings to change the order of the columns.</p><p>F2, Enter, a double click or typing "
      "edits a field of an ORV database of version 3.0.0. What is typed goes to all selected rows; "
      "nothing is written before it is saved.</p>"));
  setHorizontalHeader(header_);
  setModel(model_);
  setSelectionBehavior(SelectRows);
  setSelectionMode(ContiguousSelection);
  setItemDelegate(cells_);
  setEditTriggers(EditKeyPressed | AnyKeyPressed | DoubleClicked);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setHorizontalScrollMode(ScrollPerPixel);
  setVerticalScrollMode(ScrollPerPixel);
  setDragEnabled(true);
  setDragDropMode(DragOnly);
  setContextMenuPolicy(Qt::CustomContextMenu);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  header_->setResizeContentsPrecision(kRowsToFit);
  header_->setContextMenuPolicy(Qt::CustomContextMenu);

  connect(header_, &QHeaderView::sectionClicked, this, &RecordGrid::sortByHeader);
  connect(header_, &QHeaderView::customContextMenuRequested, this, &RecordGrid::headerMenu);
  connect(header_, &FilterHeader::filtersChanged, this,
          [this] { model_->filter(header_->filters()); });
  connect(header_, &FilterHeader::rowsWanted, this, [this] {
    if (selectedRows().isEmpty()) selectRows({0, 0});
    setFocus(Qt::OtherFocusReason);
  });
  connect(model_, &RecordModel::filled, this, &RecordGrid::tellFilling);
  connect(this, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
    emit contextMenuWanted(viewport()->mapToGlobal(position));
  });
}

void RecordGrid::show(std::unique_ptr<commands::RecordView> view, int kind) {
  rememberLayout();
  for (int i = 0; i < header_->count(); ++i) {
    header_->setSectionHidden(i, false);
    header_->moveSection(header_->visualIndex(i), i);
  }
  header_->setSortIndicatorShown(false);
  sortedColumn_ = -1;
  selectedColumn_ = -1;
  kind_ = kind;
  model_->show(std::move(view));
  header_->clearFilters();
  fitColumns();
  if (const auto layout = layouts_.find(kind); layout != layouts_.end()) {
    layout->second.applyTo(*header_, *model_);
  }
  scrollToTop();
}

void RecordGrid::reload(std::unique_ptr<commands::RecordView> view) {
  rememberLayout();
  const int place = verticalScrollBar()->value();
  const bool wasEmpty = model_->rowCount() == 0;
  const int columns = model_->columnCount();
  model_->show(std::move(view));
  if (model_->columnCount() != columns) fitColumns();
  arrange();
  layouts_.at(kind_).applyTo(*header_, *model_);
  if (wasEmpty) fitColumns();
  verticalScrollBar()->setValue(place);
}

void RecordGrid::arrange() {
  if (sortedColumn_ >= model_->columnCount()) {
    sortedColumn_ = -1;
    header_->setSortIndicatorShown(false);
  }
  selectedColumn_ = std::min(selectedColumn_, model_->columnCount() - 1);
  model_->filter(header_->filters());
  if (sortedColumn_ >= 0) model_->sort(sortedColumn_, header_->sortIndicatorOrder());
}

/// Values that came after the rows were filtered and sorted want that done again.
void RecordGrid::tellFilling(qlonglong rows, bool ended) {
  const QString panes = counted(rows, tr("pane"));
  if (!ended) {
    emit fillingTold(tr("Reading values of %1... Escape stops it.").arg(panes));
    return;
  }
  if (sortedColumn_ >= 0 || model_->isFiltered()) arrange();
  emit fillingTold(tr("Values of %1 read.").arg(panes));
}

void RecordGrid::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && model_->isFilling()) {
    model_->stopFilling();
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    edit(currentIndex(), EditKeyPressed, event);
  } else {
    QTableView::keyPressEvent(event);
  }
}

void RecordGrid::editBy(RecordEdits* edits, const QString& whyNot) {
  whyNotEdited_ = whyNot;
  model_->editBy(edits);
}

bool RecordGrid::finishEditing() {
  return cells_->finish();
}

void RecordGrid::editCurrent() {
  setFocus(Qt::OtherFocusReason);
  edit(currentIndex(), EditKeyPressed, nullptr);
}

bool RecordGrid::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
  const bool isKey = trigger == EditKeyPressed || trigger == AnyKeyPressed;
  if (isKey && index.isValid() && model_->editField(index.column()) == nullptr) {
    const QString column = model_->headings({index.column()}).constFirst();
    emit editingTold(model_->edits() == nullptr
                         ? whyNotEdited_
                         : tr("The column %1 cannot be edited.").arg(column));
  }
  return QTableView::edit(index, trigger, event);
}

QString RecordGrid::take(const QModelIndex& cell, const QString& text) {
  RecordEdits* edits = model_->edits();
  if (edits == nullptr) return whyNotEdited_;
  RowBlock rows = selectedRows();
  if (cell.row() < rows.low || cell.row() > rows.high) rows = {cell.row(), cell.row()};
  const BusyPointer busy;
  try {
    std::vector<commands::edit::TypedValue> typed;
    for (int row = rows.low; row <= rows.high; ++row) {
      typed.push_back({commands::recordNumber(model_->identifier(row)),
                       {model_->editField(cell.column()), std::nullopt},
                       text.toStdString()});
    }
    std::size_t count = 0;
    edits->change([&](commands::edit::PendingEdits& pending) { count = pending.type(typed); });
    emit editingTold(
        tr("%1 changed, not saved yet.").arg(counted(static_cast<qlonglong>(count), tr("field"))));
    return {};
  } catch (const std::exception& error) {
    const QString reason = qt(commands::describe(error));
    emit editingTold(reason.section('\n', 0, 0));
    return reason;
  }
}

void RecordGrid::clear() {
  rememberLayout();
  kind_ = -1;
  model_->show(nullptr);
}

void RecordGrid::rememberLayout() {
  if (kind_ >= 0 && header_->count() > 0)
    layouts_[kind_] = ColumnLayout::of(*header_, *model_, fittedWidths_);
}

RecordGrid::RowBlock RecordGrid::selectedRows() const {
  RowBlock block;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    block.low = block.isEmpty() ? range.top() : std::min(block.low, range.top());
    block.high = std::max(block.high, range.bottom());
  }
  return block;
}

void RecordGrid::selectRows(const RowBlock& rows) {
  if (rows.isEmpty() || rows.high >= model_->rowCount()) return;
  const int column = std::max(selectedColumn(), header_->logicalIndex(0));
  const QModelIndex first = model_->index(rows.low, column);
  selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
  selectionModel()->select(QItemSelection(first, model_->index(rows.high, column)),
                           QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  scrollTo(first);
}

void RecordGrid::sort(Qt::SortOrder order) {
  sortBy(std::max(selectedColumn_, 0), order);
}

void RecordGrid::sortBy(int column, Qt::SortOrder order) {
  const BusyPointer busy;
  model_->sort(column, order);
  sortedColumn_ = column;
  selectedColumn_ = column;
  header_->setSortIndicatorShown(true);
  header_->setSortIndicator(column, order);
  scrollToTop();
}

void RecordGrid::sortByHeader(int column) {
  const bool again = column == sortedColumn_ && header_->sortIndicatorOrder() == Qt::AscendingOrder;
  sortBy(column, again ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void RecordGrid::copyRowsAsText() const {
  const RowBlock rows = selectedRows();
  if (rows.isEmpty()) return;
  QString text;
  for (const QStringList& row : table(rows)) {
    QStringList cells;
    for (const QString& cell : row) cells << tableText(cell);
    text += cells.join('\t') + '\n';
  }
  QGuiApplication::clipboard()->setText(text);
}

void RecordGrid::copyCellAsText() const {
  const QModelIndex cell = currentIndex();
  if (!cell.isValid()) return;
  QGuiApplication::clipboard()->setText(
      tableText(model_->cells(cell.row(), cell.row(), {cell.column()})[0][0]));
}

QList<QStringList> RecordGrid::wholeTable() {
  model_->complete();
  return table({0, model_->rowCount() - 1});
}

QList<QStringList> RecordGrid::table(const RowBlock& rows) const {
  const QList<int> columns = visibleColumns();
  QList<QStringList> table;
  table << model_->headings(columns);
  return table << model_->cells(rows.low, rows.high, columns);
}

void RecordGrid::fitColumns() {
  resizeColumnsToContents();
  const int character = fontMetrics().averageCharWidth();
  fittedWidths_.clear();
  for (int i = 0; i < header_->count(); ++i) {
    const int width =
        std::clamp(header_->sectionSize(i) + character, character * kNarrowestInCharacters,
                   character * kWidestInCharacters);
    header_->resizeSection(i, width);
    fittedWidths_ << width;
  }
}

void RecordGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  if (current.isValid()) selectedColumn_ = current.column();
}

void RecordGrid::selectionChanged(const QItemSelection& selected,
                                  const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  emit selectedRowsChanged();
}

/// Rows are dragged when they are selected already; else the mouse selects a block of rows.
void RecordGrid::mousePressEvent(QMouseEvent* event) {
  if (cells_->isRefused() && !cells_->finish()) return;
  setDragEnabled(selectionModel()->isSelected(indexAt(event->pos())));
  QTableView::mousePressEvent(event);
}

void RecordGrid::startDrag(Qt::DropActions /*actions*/) {
  auto* drag = new QDrag(this);
  drag->setMimeData(model_->mimeData(selectionModel()->selectedIndexes()));
  if (drag->mimeData() == nullptr) return;
  drag->setPixmap(dragLabel(counted(selectedRows().count(), "record"), *this));
  drag->exec(Qt::CopyAction);
}

void RecordGrid::scrollContentsBy(int dx, int dy) {
  QTableView::scrollContentsBy(dx, dy);
  if (dx != 0) header_->placeEditors();
}

void RecordGrid::headerMenu(const QPoint& position) {
  const int column = header_->logicalIndexAt(position);
  QMenu menu(this);
  if (column >= 0) {
    menu.addAction(tr("Sort &Ascending"), this,
                   [this, column] { sortBy(column, Qt::AscendingOrder); });
    menu.addAction(tr("Sort &Descending"), this,
                   [this, column] { sortBy(column, Qt::DescendingOrder); });
    menu.addSeparator();
    QAction* hide = menu.addAction(tr("&Hide Column"), this, [this, column] {
      header_->setSectionHidden(column, true);
      header_->placeEditors();
    });
    hide->setEnabled(visibleColumns().size() > 1);
  }
  menu.addAction(tr("&Fit Columns"), this, &RecordGrid::fitColumns);
  menu.addAction(tr("&Clear Filters"), header_, &FilterHeader::clearFilters)
      ->setEnabled(model_->isFiltered());
  menu.addAction(tr("C&olumns..."), this, &RecordGrid::columnChooserWanted);
  menu.exec(header_->mapToGlobal(position));
}

/// In the order in which the user sees them.
QList<int> RecordGrid::visibleColumns() const {
  QList<int> columns;
  for (int visual = 0; visual < header_->count(); ++visual) {
    const int column = header_->logicalIndex(visual);
    if (!header_->isSectionHidden(column)) columns << column;
  }
  return columns;
}

}  // namespace orv::app
