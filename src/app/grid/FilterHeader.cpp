#include "app/grid/FilterHeader.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionHeader>

#include "app/Help.h"

namespace orv::app {

namespace {

constexpr int kMargin = 2;

QString filterHelp() {
  return FilterHeader::tr(
      "Shows only the rows whose field in this column contains the text.\n"
      "=text finds the whole field, = alone an empty one.\n"
      "Numbers: >3, >=3, <6, <=6, =4, 3..6");
}

}  // namespace

FilterHeader::FilterHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
  setAccessibleName(tr("Columns and filters"));
  setWhatsThis(tr(
      "A click on a heading sorts by its column, another one the other way round; one with Shift "
      "sorts what is equal there by a further column. The fields below the headings filter the "
      "rows as you type."));
  setSectionsClickable(true);
  setSectionsMovable(true);
  setHighlightSections(false);  // rows are selected: all titles would be bold
  setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  connect(this, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
    placeEditors();
    // A column that is hidden does not filter: nobody would see why rows are missing.
    if (width == 0 && column < editors_.size()) editors_[column]->clear();
  });
  connect(this, &QHeaderView::sectionMoved, this, &FilterHeader::placeEditors);
  connect(this, &QHeaderView::geometriesChanged, this, &FilterHeader::placeEditors);
}

QStringList FilterHeader::filters() const {
  QStringList texts;
  if (!shown_) return texts;
  for (const QLineEdit* editor : editors_) texts << editor->text();
  return texts;
}

void FilterHeader::clearFilters() {
  setFilters({});
  emit filtersChanged();
}

void FilterHeader::setFilters(const QStringList& texts) {
  const QSignalBlocker blocker(this);
  for (int i = 0; i < editors_.size(); ++i) editors_[i]->setText(texts.value(i));
}

void FilterHeader::showFilters(bool shown) {
  if (shown == shown_) return;
  shown_ = shown;
  updateGeometries();
  emit geometriesChanged();
  emit filtersChanged();
}

QList<QLineEdit*> FilterHeader::shownEditors() const {
  QList<QLineEdit*> shown;
  for (QLineEdit* editor : editors_) {
    if (editor->isVisible()) shown << editor;
  }
  return shown;
}

void FilterHeader::editFilter(int column) {
  if (column < 0 || column >= editors_.size()) return;
  editors_[column]->setFocus(Qt::ShortcutFocusReason);
  editors_[column]->selectAll();
}

QSize FilterHeader::sizeHint() const {
  QSize size = QHeaderView::sizeHint();
  if (shown_) size.rheight() += editorHeight();
  return size;
}

void FilterHeader::setModel(QAbstractItemModel* model) {
  QHeaderView::setModel(model);
  if (this->model() == nullptr) return;
  connect(model, &QAbstractItemModel::modelReset, this, &FilterHeader::makeEditors);
  makeEditors();
}

void FilterHeader::placeEditors() {
  const int top = QHeaderView::sizeHint().height();
  for (int i = 0; i < editors_.size() && i < count(); ++i) {
    QLineEdit* editor = editors_[i];
    const bool visible = shown_ && !isSectionHidden(i);
    editor->setVisible(visible);
    if (!visible) continue;
    const int left = i == kept_ ? 0 : sectionViewportPosition(i);
    const int width = i == kept_ ? keptWidth_ : sectionSize(i);
    editor->setGeometry(left + kMargin / 2, top, width - kMargin, editorHeight() - kMargin);
    if (i == kept_) editor->raise();
  }
}

void FilterHeader::drawHeading(QPainter& painter, int column) const {
  painter.fillRect(rect(), palette().color(QPalette::Window));
  const QRect place(0, 0, sectionSize(column), QHeaderView::sizeHint().height());
  paintSection(&painter, place, column);
}

void FilterHeader::keepEditor(int column, int width) {
  kept_ = column;
  keptWidth_ = width;
  placeEditors();
}

void FilterHeader::showOrder(const std::vector<commands::SortColumn>& order) {
  order_ = order;
  setSortIndicatorShown(!order.empty());
  if (!order.empty()) {
    setSortIndicator(static_cast<int>(order.front().column),
                     order.front().isAscending ? Qt::AscendingOrder : Qt::DescendingOrder);
  }
  viewport()->update();
}

void FilterHeader::initStyleOptionForIndex(QStyleOptionHeader* option, int logicalIndex) const {
  QHeaderView::initStyleOptionForIndex(option, logicalIndex);
  for (std::size_t i = 0; i < order_.size(); ++i) {
    if (static_cast<int>(order_[i].column) != logicalIndex) continue;
    option->sortIndicator =
        order_[i].isAscending ? QStyleOptionHeader::SortUp : QStyleOptionHeader::SortDown;
    if (order_.size() > 1) option->text = tr("%1. %2").arg(i + 1).arg(option->text);
  }
}

void FilterHeader::updateGeometries() {
  setViewportMargins(0, 0, 0, shown_ ? editorHeight() : 0);
  QHeaderView::updateGeometries();
  placeEditors();
}

bool FilterHeader::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    auto* editor = static_cast<QLineEdit*>(watched);
    switch (static_cast<QKeyEvent*>(event)->key()) {
      case Qt::Key_Escape:
        if (editor->text().isEmpty()) {
          emit rowsWanted();
        } else {
          editor->clear();
        }
        return true;
      case Qt::Key_Down:
      case Qt::Key_Return:
      case Qt::Key_Enter:
        emit rowsWanted();
        return true;
      default:
        break;
    }
  }
  return QHeaderView::eventFilter(watched, event);
}

/// One field a column, empty at first. Columns that stay the same keep theirs.
void FilterHeader::makeEditors() {
  QStringList titles;
  for (int i = 0; i < model()->columnCount(); ++i) {
    titles << model()->headerData(i, Qt::Horizontal).toString();
  }
  if (titles == titles_) return;
  titles_ = titles;
  qDeleteAll(editors_);
  editors_.clear();
  for (int i = 0; i < titles.size(); ++i) {
    auto* editor = new QLineEdit(this);
    editor->setObjectName(QStringLiteral("txtFilter%1").arg(i));
    editor->setPlaceholderText(tr("Filter"));
    editor->setClearButtonEnabled(true);
    editor->setAccessibleName(tr("Filter of %1").arg(titles[i]));
    explain(editor, filterHelp());
    editor->installEventFilter(this);
    connect(editor, &QLineEdit::textChanged, this, &FilterHeader::filtersChanged);
    editors_ << editor;
  }
  placeEditors();
}

int FilterHeader::editorHeight() const {
  return editors_.isEmpty() ? QLineEdit().sizeHint().height() + kMargin
                            : editors_.front()->sizeHint().height() + kMargin;
}

}  // namespace orv::app

#include "moc_FilterHeader.cpp"
