#include "app/grid/FindBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include "app/Help.h"
#include "app/Pointers.h"
#include "app/grid/FilterHeader.h"
#include "app/grid/RecordGrid.h"
#include "app/theme/Icons.h"

namespace orv::app {

namespace {

constexpr int kLeastCharacters = 6;

QToolButton* button(const char* iconName, const QString& name, const QString& toolTip) {
  auto* button = new QToolButton;
  button->setIcon(icon(iconName));
  button->setAutoRaise(true);
  button->setAccessibleName(name);
  explain(button, toolTip);
  return button;
}

/// The field before or after a field, in the order of reading, around the ends.
QModelIndex neighbour(const QAbstractItemModel& model, const QModelIndex& from, bool forward) {
  const int cells = model.rowCount() * model.columnCount();
  if (!from.isValid() || cells == 0) return from;
  const int place = from.row() * model.columnCount() + from.column();
  const int next = (place + (forward ? 1 : cells - 1)) % cells;
  return model.index(next / model.columnCount(), next % model.columnCount());
}

}  // namespace

FindBar::FindBar(RecordGrid& grid, QWidget* parent)
    : QWidget(parent), grid_(grid), text_(new QLineEdit), result_(new QLabel) {
  setObjectName("FindBar");
  text_->setObjectName("txtFind");
  text_->setPlaceholderText(tr("Find in the records shown"));
  text_->setAccessibleName(tr("Text to find"));
  explain(text_, tr("Finds the next field that contains this text, in any column"));
  text_->setClearButtonEnabled(true);
  text_->setMinimumWidth(fontMetrics().averageCharWidth() * kLeastCharacters);
  auto* previous = button("previous", tr("Find previous"), tr("Find previous (Shift+F3)"));
  auto* next = button("next", tr("Find next"), tr("Find next (F3)"));
  auto* shut = button("cancel", tr("Close the find bar"), tr("Close (Esc)"));

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->setSpacing(2);
  layout->addWidget(text_, 1);
  layout->addWidget(previous);
  layout->addWidget(next);
  layout->addWidget(result_);
  layout->addWidget(shut);

  connect(text_, &QLineEdit::textChanged, this, [this] { find(true, true); });
  connect(previous, &QToolButton::clicked, this, &FindBar::findPrevious);
  connect(next, &QToolButton::clicked, this, &FindBar::findNext);
  connect(shut, &QToolButton::clicked, this, &FindBar::close);
  hide();
}

void FindBar::open() {
  show();
  text_->setFocus(Qt::ShortcutFocusReason);
  text_->selectAll();
}

void FindBar::close() {
  hide();
  grid_.setFocus(Qt::OtherFocusReason);
}

void FindBar::findNext() {
  text_->text().isEmpty() ? open() : find(true, false);
}

void FindBar::findPrevious() {
  text_->text().isEmpty() ? open() : find(false, false);
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      close();
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      event->modifiers() & Qt::ShiftModifier ? findPrevious() : findNext();
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

void FindBar::find(bool forward, bool includingCurrent) {
  result_->clear();
  if (text_->text().isEmpty()) return;
  const BusyPointer busy;
  RecordModel& model = grid_.records();
  const QModelIndex current = grid_.currentIndex();
  const QModelIndex start = includingCurrent ? current : neighbour(model, current, forward);
  const QModelIndex found = model.find(text_->text(), start, forward);
  if (!found.isValid()) {
    result_->setText(tr("Not found"));
    return;
  }
  grid_.filterHeader().setSectionHidden(found.column(), false);
  grid_.setCurrentIndex(found);
  grid_.scrollTo(found);
}

}  // namespace orv::app

#include "moc_FindBar.cpp"
