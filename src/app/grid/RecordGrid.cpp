#include "app/grid/RecordGrid.h"

#include <QClipboard>
#include <QDrag>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>

#include "app/Pointers.h"
#include "app/Text.h"
#include "app/grid/CellDelegate.h"
#include "app/grid/FilterHeader.h"
#include "app/grid/FrozenColumn.h"
#include "app/grid/TypedText.h"

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
      cells_(new CellDelegate(*this, *model_,
                              [this](const QModelIndex& cell, const QString& before,
                                     const QString& text) { return take(cell, before, text); })),
      order_(*model_) {
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
  frozen_ = new FrozenColumn(*this);  // what follows scrolls
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
  // The second click of two that follow each other soon.
  connect(header_, &QHeaderView::sectionDoubleClicked, this, &RecordGrid::sortByHeader);
  connect(header_, &QHeaderView::customContextMenuRequested, this, &RecordGrid::headerMenu);
  connect(header_, &FilterHeader::filtersChanged, this, [this] {
    finishEditing();
    keepPlace([this] { model_->filter(header_->filters()); });
  });
  connect(header_, &FilterHeader::rowsWanted, this, [this] {
    if (selectedRows().isEmpty()) selectRows({0, 0});
    setFocus(Qt::OtherFocusReason);
  });
  connect(model_, &RecordModel::filled, this, &RecordGrid::tellFilling);
  connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
    if (model_->editField(index.column()) == nullptr) emit detailsWanted();
  });
  connect(this, &QWidget::customContextMenuRequested, this, [this](const QPoint& position) {
    emit contextMenuWanted(viewport()->mapToGlobal(position));
  });
}

void RecordGrid::show(std::unique_ptr<commands::RecordView> view, int kind,
                      const std::string& key) {
  rememberLayout();
  rememberLeft();
  for (int i = 0; i < header_->count(); ++i) {
    header_->setSectionHidden(i, false);
    header_->moveSection(header_->visualIndex(i), i);
  }
  order_.begin(kind);
  selectedColumn_ = -1;
  kind_ = kind;
  key_ = key;
  model_->show(std::move(view));
  fitColumns();
  if (const auto layout = layouts_.find(kind); layout != layouts_.end()) {
    layout->second.applyTo(*header_, *model_);
  }
  scrollToTop();
  findAsLeft();
}

void RecordGrid::reload(std::unique_ptr<commands::RecordView> view,
                        GridPlace::Selection selection) {
  rememberLayout();
  keepPlace(
      [&] {
        model_->reload(std::move(view));
        arrange();
        fitColumns();
        layouts_.at(kind_).applyTo(*header_, *model_);
      },
      selection);
}

void RecordGrid::digits(int value) {
  keepPlace([&] { model_->digits(value); });
}

void RecordGrid::keepPlace(const std::function<void()>& change, GridPlace::Selection selection) {
  const GridPlace place(*this);
  {
    const QScopedValueRollback placing(isPlacing_, true);
    change();
    place.restore(*this, selection);
  }
  if (!isPlacing_) emit selectedRowsChanged();
}

void RecordGrid::rememberLeft() {
  if (key_.empty()) return;
  Left left;
  left.place = GridPlace(*this);
  const auto& columns = model_->recordColumns();
  const QStringList filters = header_->filters();
  for (int i = 0; i < filters.size(); ++i) {
    if (!filters[i].isEmpty()) left.filters[columns[i].name] = filters[i];
  }
  for (const auto& by : order_.columns()) left.order.emplace_back(columns[by.column].name, by);
  left_[key_] = std::move(left);
}

void RecordGrid::findAsLeft() {
  const Left& left = left_[key_];
  QStringList filters(model_->columnCount());
  for (const auto& [name, text] : left.filters) {
    const int column = columnNamed(name);
    if (column >= 0 && !header_->isSectionHidden(column)) filters[column] = text;
  }
  header_->setFilters(filters);
  for (const auto& [name, by] : left.order) {
    const int column = columnNamed(name);
    if (column >= 0) order_.add(column, by.isAscending);
  }
  arrange();
  left.place.restore(*this, GridPlace::Selection::cleared);
}

int RecordGrid::columnNamed(const std::string& name) const {
  const auto& columns = model_->recordColumns();
  const auto found = std::ranges::find(columns, name, &commands::RecordColumn::name);
  return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

void RecordGrid::arrange() {
  order_.shorten();
  header_->showOrder(order_.columns());
  selectedColumn_ = std::min(selectedColumn_, model_->columnCount() - 1);
  model_->filter(header_->filters());
  if (!order_.columns().empty()) model_->sortBy(order_.columns());
}

/// Values that came after the rows were filtered and sorted want that done again.
void RecordGrid::tellFilling(qlonglong rows, bool ended) {
  const QString panes = counted(rows, tr("pane"));
  if (!ended) {
    emit fillingTold(tr("Reading values of %1... Escape stops it.").arg(panes));
    return;
  }
  if (!order_.columns().empty() || model_->isFiltered()) keepPlace([this] { arrange(); });
  emit fillingTold(tr("Values of %1 read.").arg(panes));
}

void RecordGrid::keyPressEvent(QKeyEvent* event) {
  const bool extends = event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
  if (event->key() == Qt::Key_Escape && model_->isFilling()) {
    model_->stopFilling();
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    edit(currentIndex(), EditKeyPressed, event);
  } else if (extends && (event->key() == Qt::Key_Home || event->key() == Qt::Key_End)) {
    extendToEnd(event->key() == Qt::Key_End);
  } else if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
    const QRect row = visualRect(currentIndex());
    emit contextMenuWanted(viewport()->mapToGlobal(row.isValid() ? row.bottomLeft() : QPoint()));
  } else if (event->matches(QKeySequence::Paste)) {
    emit editingTold(tr("No records have been copied. Ctrl+Shift+V pastes a text into fields."));
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
  const bool isWanted = (trigger & editTriggers()) != 0 && index.column() == frozen_->column();
  if (isWanted && model_->editField(index.column()) != nullptr) {
    horizontalScrollBar()->setValue(0);  // the editor stands where the column is
  }
  return QTableView::edit(index, trigger, event);
}

/// From one field to the next that can be edited, across the ends of rows.
void RecordGrid::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  const bool isNext = hint == QAbstractItemDelegate::EditNextItem;
  const bool goesOn = isNext || hint == QAbstractItemDelegate::EditPreviousItem;
  QTableView::closeEditor(editor, goesOn ? QAbstractItemDelegate::NoHint : hint);
  const QModelIndex field = goesOn ? fieldBeside(currentIndex(), isNext) : QModelIndex();
  if (!field.isValid()) return;
  setCurrentIndex(field);
  QTableView::edit(field);
}

QModelIndex RecordGrid::fieldBeside(const QModelIndex& cell, bool after) const {
  QList<int> columns = visibleColumns();
  if (!after) std::ranges::reverse(columns);
  const qsizetype at = columns.indexOf(cell.column());
  const int nextRow = cell.row() + (after ? 1 : -1);
  for (qsizetype i = at + 1; i <= at + columns.size(); ++i) {
    const int column = columns[i % columns.size()];
    if (model_->editField(column) == nullptr) continue;
    return model_->index(i < columns.size() ? cell.row() : nextRow, column);
  }
  return {};
}

QString RecordGrid::take(const QModelIndex& cell, const QString& before, const QString& text) {
  if (model_->edits() == nullptr) return whyNotEdited_;
  RowBlock rows = selectedRows();
  if (cell.row() < rows.low || cell.row() > rows.high) rows = {cell.row(), cell.row()};
  const TypedText typed = takeTyped(*model_, rows.low, rows.high, cell, before, text);
  if (!typed.told.isEmpty()) emit editingTold(typed.told);
  return typed.refusal;
}

void RecordGrid::clear() {
  rememberLayout();
  rememberLeft();
  kind_ = -1;
  key_.clear();
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
  selectBlock(rows);
  scrollTo(first);
}

void RecordGrid::selectBlock(const RowBlock& rows) {
  if (rows.isEmpty() || rows.high >= model_->rowCount()) return;
  selectionModel()->select(QItemSelection(model_->index(rows.low, 0), model_->index(rows.high, 0)),
                           QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

/// From where the selection began to the first or last row.
void RecordGrid::extendToEnd(bool forward) {
  model_->readOn();
  const RowBlock rows = selectedRows();
  const int current = std::max(currentIndex().row(), 0);
  const int anchor = rows.isEmpty() ? current : current == rows.low ? rows.high : rows.low;
  const int end = forward ? model_->rowCount() - 1 : 0;
  if (end < 0) return;
  const QModelIndex target = model_->index(end, std::max(currentIndex().column(), 0));
  selectionModel()->setCurrentIndex(target, QItemSelectionModel::NoUpdate);
  selectBlock({std::min(anchor, end), std::max(anchor, end)});
  scrollTo(target);
}

QString RecordGrid::selectedNames() const {
  constexpr int kMostNames = 5;
  const RowBlock rows = selectedRows();
  if (rows.isEmpty()) return {};
  QStringList names;
  for (int row = rows.low; row <= rows.high && names.size() < kMostNames; ++row) {
    names << model_->recordName(row);
  }
  QString text = names.join(", ");
  if (rows.count() > kMostNames) text += tr(", ...");
  return tr("%1: %2").arg(counted(rows.count(), tr("record")), text);
}

void RecordGrid::sort(Qt::SortOrder order) {
  sortBy({order_.by(std::max(selectedColumn_, 0), order == Qt::AscendingOrder)});
}

void RecordGrid::sortBy(RowOrder::Columns order) {
  if (!finishEditing()) return;
  const BusyPointer busy;
  order_.columns(std::move(order));
  const RowOrder::Columns& columns = order_.columns();
  if (!columns.empty()) selectedColumn_ = static_cast<int>(columns.back().column);
  header_->showOrder(columns);
  keepPlace([&] { model_->sortBy(columns); });
  scrollToTop();
}

/// With Shift the column is added to those that the rows are sorted by.
void RecordGrid::sortByHeader(int column) {
  const bool adds = (QGuiApplication::keyboardModifiers() & Qt::ShiftModifier) != 0;
  sortBy(adds ? order_.further(column) : order_.only(column));
}

void RecordGrid::readNumbers(int column, bool reads) {
  order_.readNumbers(column, reads);
  if (!order_.columns().empty()) sortBy(order_.columns());
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
      tableText(model_->cells(cell.row(), cell.row(), {cell.column()}, copiesAsShown_)[0][0]));
}

QList<QStringList> RecordGrid::wholeTable() {
  model_->complete();
  return table({0, model_->rowCount() - 1});
}

QList<QStringList> RecordGrid::table(const RowBlock& rows) const {
  const QList<int> columns = visibleColumns();
  QList<QStringList> table;
  table << model_->headings(columns);
  return table << model_->cells(rows.low, rows.high, columns, copiesAsShown_);
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
  // Where the place is kept, the heading that was clicked last stays the column chosen.
  if (current.isValid() && !isPlacing_) selectedColumn_ = current.column();
}

void RecordGrid::selectionChanged(const QItemSelection& selected,
                                  const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  if (!isPlacing_) emit selectedRowsChanged();
}

/// Rows are dragged when they are selected already; else the mouse selects a block of rows.
void RecordGrid::mousePressEvent(QMouseEvent* event) {
  if (!finishEditing()) return;
  setDragEnabled(selectionModel()->isSelected(indexAt(event->pos())));
  QTableView::mousePressEvent(event);
}

/// A dock that opens leaves the current row in sight.
void RecordGrid::resizeEvent(QResizeEvent* event) {
  const int row = currentIndex().row();
  const int before = row < 0 ? -1 : rowViewportPosition(row);
  QTableView::resizeEvent(event);
  if (before < 0 || before >= event->oldSize().height()) return;
  const int below = rowViewportPosition(row) + rowHeight(row) - viewport()->height();
  if (below > 0) verticalScrollBar()->setValue(verticalScrollBar()->value() + below);
}

QModelIndex RecordGrid::indexAt(const QPoint& position) const {
  const QModelIndex index = QTableView::indexAt(position);
  const int row = rowAt(position.y());
  if (index.isValid() || row < 0) return index;
  const QList<int> columns = visibleColumns();
  return columns.isEmpty() ? index : model_->index(row, columns.constLast());
}

void RecordGrid::freezeFirstColumn(bool frozen) {
  frozen_->freeze(frozen);
}

void RecordGrid::drawColumn(QPainter& painter, int column) const {
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  painter.fillRect(viewport()->rect(), palette().color(QPalette::Base));
  for (int row = rowAt(0); row >= 0 && row < model_->rowCount(); ++row) {
    const int top = rowViewportPosition(row);
    if (top >= viewport()->height()) break;
    const QModelIndex index = model_->index(row, column);
    QStyleOptionViewItem cell = option;
    cell.rect = QRect(0, top, columnWidth(column), rowHeight(row));
    cell.features.setFlag(QStyleOptionViewItem::Alternate, row % 2 == 1);
    cell.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
    cell.state.setFlag(QStyle::State_HasFocus, hasFocus() && index == currentIndex());
    if (row % 2 == 1) painter.fillRect(cell.rect, palette().color(QPalette::AlternateBase));
    itemDelegateForIndex(index)->paint(&painter, cell, index);
  }
}

/// A column that stands still is in sight, and covers none that is looked for.
void RecordGrid::scrollTo(const QModelIndex& index, ScrollHint hint) {
  const bool stands = index.isValid() && index.column() == frozen_->column();
  const int scrolled = horizontalScrollBar()->value();
  QTableView::scrollTo(index, hint);
  if (stands) return horizontalScrollBar()->setValue(scrolled);
  const int hidden = frozen_->width() - columnViewportPosition(index.column());
  if (frozen_->width() > 0 && hidden > 0) {
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - hidden);
  }
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
  QMenu menu(this);
  addColumnCommands(menu, header_->logicalIndexAt(position));
  menu.exec(header_->mapToGlobal(QPoint(std::max(position.x(), 0), position.y())));
}

void RecordGrid::addColumnCommands(QMenu& menu, int column) {
  if (column >= 0 && column < model_->columnCount()) {
    menu.addAction(tr("Sort &Ascending"), this,
                   [this, column] { sortBy({order_.by(column, true)}); });
    menu.addAction(tr("Sort &Descending"), this,
                   [this, column] { sortBy({order_.by(column, false)}); });
    menu.addAction(tr("Sort Further &by This"), this,
                   [this, column] { sortBy(order_.further(column)); });
    if (!model_->recordColumns()[column].isNumber) {
      QAction* numbers = menu.addAction(tr("&Numbers in Texts by Value"));
      numbers->setCheckable(true);
      numbers->setChecked(order_.by(column, true).readsNumbers);
      connect(numbers, &QAction::triggered, this,
              [this, column](bool reads) { readNumbers(column, reads); });
    }
    menu.addSeparator();
    menu.addAction(tr("Move &Left"), this, [this, column] { moveColumn(column, -1); });
    menu.addAction(tr("Move &Right"), this, [this, column] { moveColumn(column, 1); });
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
}

void RecordGrid::moveColumn(int column, int step) {
  const QList<int> shown = visibleColumns();
  const qsizetype target = shown.indexOf(column) + step;
  if (target < 0 || target >= shown.size()) return;
  header_->moveSection(header_->visualIndex(column), header_->visualIndex(shown[target]));
}

QList<int> RecordGrid::visibleColumns() const {
  QList<int> columns;
  for (int visual = 0; visual < header_->count(); ++visual) {
    const int column = header_->logicalIndex(visual);
    if (!header_->isSectionHidden(column)) columns << column;
  }
  return columns;
}

}  // namespace orv::app

#include "moc_RecordGrid.cpp"
