#include "app/dialogs/KeysDialog.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/Help.h"

namespace orv::app {

namespace {

enum KeyColumn { kCommand, kKeys, kMeaning };

constexpr QSize kKeysInCharacters(110, 34);

QString plain(QString text) {
  return text.remove('&').remove("...").remove(QChar(0x2026));
}

/// Those of the menus below it, too.
void addWithKeys(const QMenu& menu, QList<QAction*>& actions) {
  for (QAction* action : menu.actions()) {
    if (action->menu() != nullptr) addWithKeys(*action->menu(), actions);
    if (!action->shortcut().isEmpty()) actions << action;
  }
}

/// What people call the dock or other part of the window that an action belongs to.
QString partOf(const QAction& action) {
  QString part;
  for (const QObject* object = action.parent(); object != nullptr; object = object->parent()) {
    if (const auto* dock = qobject_cast<const QDockWidget*>(object)) return dock->windowTitle();
    const auto* widget = qobject_cast<const QWidget*>(object);
    if (widget && !widget->isWindow() && part.isEmpty()) part = widget->accessibleName();
  }
  return part;
}

}  // namespace

QList<KeysDialog::Part> KeysDialog::partsOf(const QWidget& window) {
  QList<Part> parts;
  QList<QAction*> listed;
  const auto* main = qobject_cast<const QMainWindow*>(&window);
  for (const QAction* action : main ? main->menuBar()->actions() : QList<QAction*>()) {
    Part part{plain(action->text()), {}};
    addWithKeys(*action->menu(), part.actions);
    listed << part.actions;
    parts << part;
  }
  for (QAction* action : window.findChildren<QAction*>()) {
    const QString title = partOf(*action);
    if (action->shortcut().isEmpty() || title.isEmpty() || listed.contains(action)) continue;
    const auto isIt = [&](const Part& part) { return part.title == title; };
    auto part = std::find_if(parts.begin(), parts.end(), isIt);
    if (part == parts.end()) part = parts.insert(parts.end(), Part{title, {}});
    part->actions << action;
  }
  parts.removeIf([](const Part& part) { return part.actions.isEmpty(); });
  return parts;
}

KeysDialog::KeysDialog(const QList<Part>& parts, QWidget* parent)
    : QDialog(parent), list_(new QTreeWidget) {
  setObjectName("KeysDialog");
  setWindowTitle(tr("Keys"));
  auto* search = new QLineEdit;
  search->setObjectName("txtKeysSearch");
  search->setPlaceholderText(tr("Search keys and commands"));
  search->setClearButtonEnabled(true);
  search->setAccessibleName(search->placeholderText());
  explain(search, tr("Lists only the commands with this text in their name, keys or meaning"));
  list_->setObjectName("lstKeys");
  list_->setAccessibleName(tr("Keys of commands"));
  list_->setWhatsThis(
      tr("The commands that have keys. Those of a dock are for when it is active."));
  list_->setHeaderLabels({tr("Command"), tr("Keys"), tr("What it does")});
  list_->setRootIsDecorated(false);
  list_->setAlternatingRowColors(true);
  fill(parts);
  auto* hint = new QLabel(tr(
      "Letters that are underlined are reached with Alt; Shift+F1 explains the part of the window "
      "that is clicked on next, with keys that it has besides."));
  hint->setWordWrap(true);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(search, &QLineEdit::textChanged, this, &KeysDialog::search);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(search);
  layout->addWidget(list_, 1);
  layout->addWidget(hint);
  layout->addWidget(buttons);
  resize(fontMetrics().averageCharWidth() * kKeysInCharacters.width(),
         fontMetrics().lineSpacing() * kKeysInCharacters.height());
}

void KeysDialog::fill(const QList<Part>& parts) {
  for (const Part& part : parts) {
    auto* section = new QTreeWidgetItem(list_, {part.title});
    QFont bold = list_->font();
    bold.setBold(true);
    section->setFont(kCommand, bold);
    section->setFlags(Qt::ItemIsEnabled);
    section->setExpanded(true);
    for (const QAction* action : part.actions) {
      const QString keys =
          QKeySequence::listToString(action->shortcuts(), QKeySequence::NativeText);
      auto* item = new QTreeWidgetItem(section, {plain(action->text()), keys, action->whatsThis()});
      item->setToolTip(kMeaning, action->whatsThis());
    }
  }
  for (const int column : {kCommand, kKeys}) list_->resizeColumnToContents(column);
}

void KeysDialog::search(const QString& text) {
  for (int i = 0; i < list_->topLevelItemCount(); ++i) {
    QTreeWidgetItem* section = list_->topLevelItem(i);
    bool isSeen = false;
    for (int j = 0; j < section->childCount(); ++j) {
      QTreeWidgetItem* item = section->child(j);
      bool matches = false;
      for (const int column : {kCommand, kKeys, kMeaning}) {
        matches = matches || item->text(column).contains(text, Qt::CaseInsensitive);
      }
      item->setHidden(!matches);
      isSeen = isSeen || matches;
    }
    section->setHidden(!isSeen);
  }
}

}  // namespace orv::app

#include "moc_KeysDialog.cpp"
