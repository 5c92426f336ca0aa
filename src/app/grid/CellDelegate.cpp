#include "app/grid/CellDelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTimer>

#include "app/Text.h"
#include "app/grid/RecordModel.h"
#include "commands/edit/Field.h"

namespace orv::app {

using commands::edit::EditField;
using commands::edit::FieldType;

namespace {

constexpr int kCorner = 6;
constexpr int kLinesOfMemo = 6;
constexpr int kMemoInCharacters = 50;

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Base).lightness() < 128;
}

QColor changedColour(const QPalette& palette) {
  return isDark(palette) ? QColor(0x4a, 0x3a, 0x14) : QColor(0xff, 0xec, 0xb3);
}

QComboBox* makeList(const QStringList& names, bool takesNew, QWidget* parent) {
  auto* list = new QComboBox(parent);
  list->addItems(names);
  list->setEditable(takesNew);
  list->setInsertPolicy(QComboBox::NoInsert);
  if (takesNew) list->setCompleter(nullptr);  // a new name may be the beginning of another
  list->setFrame(false);
  return list;
}

QWidget* makeMemo(QWidget* parent) {
  auto* memo = new QPlainTextEdit(parent);
  memo->setTabChangesFocus(true);
  memo->setWhatsThis(CellDelegate::tr("Enter takes the text, Shift+Enter begins a new line."));
  return memo;
}

QString textOf(const QWidget& editor) {
  if (const auto* list = qobject_cast<const QComboBox*>(&editor)) return list->currentText();
  if (const auto* memo = qobject_cast<const QPlainTextEdit*>(&editor)) return memo->toPlainText();
  return static_cast<const QLineEdit&>(editor).text();
}

void setText(QWidget& editor, const QString& text) {
  if (auto* list = qobject_cast<QComboBox*>(&editor)) {
    list->setCurrentText(text);
    if (list->lineEdit()) list->lineEdit()->selectAll();
  } else if (auto* memo = qobject_cast<QPlainTextEdit*>(&editor)) {
    memo->setPlainText(text);
    memo->selectAll();
  } else {
    static_cast<QLineEdit&>(editor).setText(text);
  }
}

}  // namespace

CellDelegate::CellDelegate(QAbstractItemView& view, const RecordModel& model, Take take)
    : QStyledItemDelegate(&view),
      view_(view),
      model_(model),
      take_(std::move(take)),
      refusal_(new QLabel(view.viewport())) {
  refusal_->setObjectName(QStringLiteral("lblCellRefusal"));
  refusal_->setTextFormat(Qt::PlainText);
  refusal_->setWordWrap(true);
  refusal_->setMargin(4);
  refusal_->setFrameShape(QFrame::Box);
  refusal_->setAutoFillBackground(true);
  refusal_->setBackgroundRole(QPalette::ToolTipBase);
  refusal_->setForegroundRole(QPalette::ToolTipText);
  refusal_->setFocusPolicy(Qt::NoFocus);
  refusal_->setWhatsThis(tr("Why the field cannot become what was typed"));
  refusal_->hide();
}

bool CellDelegate::finish() {
  if (!editor_) return true;
  if (!commit(*editor_)) {
    editor_->setFocus();
    return false;
  }
  close(*editor_, NoHint);
  return true;
}

QWidget* CellDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& index) const {
  const EditField* field = model_.editField(index.column());
  if (!field) return nullptr;
  QWidget* editor = nullptr;
  if (field->type == FieldType::choice) {
    editor = makeList(model_.choices(index.column()), true, parent);
  } else if (field->type == FieldType::flag) {
    editor = makeList({QStringLiteral("no"), QStringLiteral("yes")}, false, parent);
  } else if (field->type == FieldType::text && field->longest == 0) {
    editor = makeMemo(parent);
  } else {
    auto* line = new QLineEdit(parent);
    line->setFrame(false);
    if (field->type != FieldType::text) line->setAlignment(Qt::AlignRight);
    editor = line;
  }
  editor->setObjectName(QStringLiteral("CellEditor"));
  editor->setAccessibleName(
      model_.headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
  editor->setAutoFillBackground(true);
  editor_ = editor;
  index_ = index;
  text_ = model_.editText(index);
  QLabel* refusal = refusal_;
  connect(editor, &QObject::destroyed, refusal, &QWidget::hide);
  if (auto* list = qobject_cast<QComboBox*>(editor)) {
    connect(list, &QComboBox::currentTextChanged, refusal, &QWidget::hide);
  } else if (auto* memo = qobject_cast<QPlainTextEdit*>(editor)) {
    connect(memo, &QPlainTextEdit::textChanged, refusal, &QWidget::hide);
  } else {
    connect(static_cast<QLineEdit*>(editor), &QLineEdit::textChanged, refusal, &QWidget::hide);
  }
  setText(*editor, text_);
  return editor;
}

/// The editor has its text from the beginning on; what is read into the grid meanwhile does not
/// change what the user types.
void CellDelegate::setEditorData(QWidget* /*editor*/, const QModelIndex& /*index*/) const {}

/// The view wants this when another cell becomes the current one.
void CellDelegate::setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                                const QModelIndex& /*index*/) const {
  if (editor == editor_) commit(*editor);
}

void CellDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex& /*index*/) const {
  QRect place = option.rect;
  if (qobject_cast<QPlainTextEdit*>(editor) != nullptr) {
    const QFontMetrics metrics = editor->fontMetrics();
    const QRect room = view_.viewport()->rect();
    place.setWidth(std::max(place.width(), metrics.averageCharWidth() * kMemoInCharacters));
    place.setHeight(metrics.lineSpacing() * kLinesOfMemo);
    place.moveRight(std::min(place.right(), std::max(room.right(), place.width())));
    place.moveBottom(std::min(place.bottom(), std::max(room.bottom(), place.height())));
  }
  editor->setGeometry(place);
}

void CellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (model_.isChanged(index)) option->backgroundBrush = changedColour(option->palette);
}

/// A corner, too, which a selected row does not cover.
void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  if (!model_.isChanged(index)) return;
  const bool isSelected = option.state & QStyle::State_Selected;
  const QPoint corner = option.rect.topRight() + QPoint(1, 0);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Link));
  painter->drawPolygon(QPolygon{corner, corner - QPoint(kCorner, 0), corner + QPoint(0, kCorner)});
  painter->restore();
}

bool CellDelegate::eventFilter(QObject* object, QEvent* event) {
  auto* editor = qobject_cast<QWidget*>(object);
  if (editor == nullptr || editor != editor_)
    return QStyledItemDelegate::eventFilter(object, event);
  if (event->type() == QEvent::FocusOut) {
    leave(*editor);
    return false;
  }
  if (event->type() == QEvent::KeyPress && pressed(*editor, static_cast<QKeyEvent&>(*event))) {
    return true;
  }
  return QStyledItemDelegate::eventFilter(object, event);
}

bool CellDelegate::pressed(QWidget& editor, const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (auto* memo = qobject_cast<QPlainTextEdit*>(&editor);
          memo != nullptr && key.modifiers().testFlag(Qt::ShiftModifier)) {
        memo->insertPlainText(QStringLiteral("\n"));
      } else if (commit(editor)) {
        close(editor, NoHint);
      }
      return true;
    case Qt::Key_Tab:
      if (commit(editor)) close(editor, EditNextItem);
      return true;
    case Qt::Key_Backtab:
      if (commit(editor)) close(editor, EditPreviousItem);
      return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      // In a line these go on to the rows.
      return qobject_cast<QLineEdit*>(&editor) != nullptr && !commit(editor);
    case Qt::Key_Escape:
      close(editor, RevertModelCache);
      return true;
    default:
      return false;
  }
}

/// What its end does to the keyboard is no leaving of the editor any more.
void CellDelegate::close(QWidget& editor, EndEditHint hint) {
  editor_ = nullptr;
  emit closeEditor(&editor, hint);
}

/// An editor waits while another window, or its own list, has the keyboard.
void CellDelegate::leave(QWidget& editor) {
  if (!editor.isActiveWindow() || QApplication::activePopupWidget() != nullptr) return;
  const QWidget* focus = QApplication::focusWidget();
  if (focus != nullptr && (focus == &editor || editor.isAncestorOf(focus))) return;
  if (commit(editor)) return close(editor, NoHint);
  // Wherever the user was going: what is wrong is not lost.
  QTimer::singleShot(0, &editor, [&editor] { editor.setFocus(); });
}

bool CellDelegate::commit(QWidget& editor) const {
  const QString text = textOf(editor);
  if (text == text_ || !index_.isValid()) return true;
  const QString reason = take_(index_, text_, text);
  if (reason.isEmpty()) {
    text_ = text;
    return true;
  }
  tellRefusal(editor, reason);
  return false;
}

/// Below the editor, or above it where there is no room.
void CellDelegate::tellRefusal(const QWidget& editor, const QString& reason) const {
  constexpr int kWidestInCharacters = 60;
  const QRect room = view_.viewport()->rect();
  refusal_->setText(shownText(reason));
  const int widest =
      std::min(room.width(), refusal_->fontMetrics().averageCharWidth() * kWidestInCharacters);
  refusal_->setFixedWidth(std::min(widest, refusal_->fontMetrics().horizontalAdvance(reason) + 24));
  refusal_->resize(refusal_->width(), refusal_->heightForWidth(refusal_->width()));
  QRect place(editor.geometry().bottomLeft() + QPoint(0, 2), refusal_->size());
  if (place.bottom() > room.bottom()) place.moveBottom(editor.geometry().top() - 2);
  if (place.right() > room.right()) place.moveRight(room.right());
  refusal_->move(place.topLeft());
  refusal_->raise();
  refusal_->show();
}

}  // namespace orv::app

#include "moc_CellDelegate.cpp"
