// Whether everything that a user can use says what it is: to the eye, to What's This and to a
// screen reader.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDockWidget>
#include <QGraphicsView>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTabBar>
#include <QTableView>
#include <QToolBar>
#include <QToolButton>

#include "app/WindowTest.h"
#include "app/dialogs/GuideWindow.h"
#include "app/dialogs/IntegrationDialog.h"
#include "app/dialogs/KeysDialog.h"
#include "app/dialogs/ProgressDialog.h"
#include "app/dialogs/ReportDialog.h"
#include "app/dialogs/dlgCompact.h"
#include "app/dialogs/dlgTextFileOptions.h"
#include "app/dialogs/frmAbout.h"
#include "app/dialogs/frmOptions.h"
#include "app/grid/ColumnChooser.h"

namespace orv::test {

namespace {

template <class... Kinds>
bool isAny(const QWidget& widget) {
  return (... || (qobject_cast<const Kinds*>(&widget) != nullptr));
}

/// Parts that the toolkit makes for itself, inside of those that the program made.
bool isPartOfAnother(const QWidget& widget) {
  if (widget.objectName().startsWith("qt_")) return true;
  const QWidget* parent = widget.parentWidget();
  if (parent != nullptr && isAny<QTableView>(*parent) && isAny<QAbstractButton>(widget))
    return true;
  for (; parent != nullptr; parent = parent->parentWidget()) {
    if (isAny<QComboBox, QAbstractSpinBox, QLineEdit, QTabBar>(*parent)) return true;
  }
  return false;
}

bool isGrid(const QWidget& widget) {
  return isAny<QAbstractItemView, QPlainTextEdit, QGraphicsView, QDockWidget, QToolBar,
               QProgressBar>(widget) &&
         !isAny<QHeaderView>(widget);
}

bool isEdit(const QWidget& widget) {
  return isAny<QLineEdit, QComboBox, QAbstractSpinBox>(widget);
}

/// Buttons of a menu or tool bar take all from their action; OK, Cancel and Close need no words.
bool isButtonToExplain(const QWidget& widget) {
  if (const auto* tool = qobject_cast<const QToolButton*>(&widget)) {
    return tool->defaultAction() == nullptr;
  }
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  static const QStringList plain{"OK", "Cancel", "Close"};
  return button != nullptr && !plain.contains(button->text().remove('&'));
}

std::string nameOf(const QObject& object) {
  return std::string(object.metaObject()->className()) + " \"" + object.objectName().toStdString() +
         '"';
}

class Examiner {
 public:
  void examine(const QWidget& window) {
    window_ = nameOf(window);
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
      if (!isPartOfAnother(*widget)) examineWidget(*widget);
    }
    for (const QAction* action : window.findChildren<QAction*>()) examineAction(*action);
  }
  int examined() const { return examined_; }

 private:
  void examineWidget(const QWidget& widget) {
    const bool isButton = isButtonToExplain(widget);
    if (!isGrid(widget) && !isEdit(widget) && !isButton) return;
    ++examined_;
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    const bool isNamed = !widget.accessibleName().isEmpty() ||
                         (button != nullptr && !button->text().isEmpty()) || hasLabel(widget);
    EXPECT_TRUE(isNamed) << window_ << ": no accessible name: " << nameOf(widget);
    EXPECT_FALSE(widget.whatsThis().isEmpty()) << window_ << ": no What's This: " << nameOf(widget);
    if (isGrid(widget)) return;  // the tool tips of these are those of their cells
    EXPECT_FALSE(widget.toolTip().isEmpty()) << window_ << ": no tool tip: " << nameOf(widget);
  }

  static bool hasLabel(const QWidget& widget) {
    const auto labels = widget.window()->findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](const QLabel* label) { return label->buddy() == &widget; });
  }

  /// A tool tip that only repeats the text explains nothing; it is what the toolkit gives an action
  /// that has none.
  void examineAction(const QAction& action) {
    const QWidget* owner = qobject_cast<const QWidget*>(action.parent());
    if (action.isSeparator() || action.text().isEmpty()) return;
    if (owner != nullptr && isEdit(*owner)) return;
    ++examined_;
    EXPECT_FALSE(action.whatsThis().isEmpty())
        << window_ << ": no What's This: " << action.text().toStdString();
    EXPECT_NE(action.toolTip(), action.text().remove('&').remove("..."))
        << window_ << ": no tool tip: " << action.text().toStdString();
  }

  std::string window_;
  int examined_ = 0;
};

}  // namespace

TEST_F(WindowTest, EverythingExplainsItself) {
  ORV_NEEDS_CORPUS();
  openCopy("glazing.mdb");
  Examiner examiner;
  examiner.examine(window);
  EXPECT_GT(examiner.examined(), 60);

  examiner.examine(app::frmOptions({}));
  examiner.examine(app::dlgTextFileOptions());
  examiner.examine(app::KeysDialog(app::KeysDialog::partsOf(window)));
  examiner.examine(app::GuideWindow());
  examiner.examine(app::frmAbout());
  examiner.examine(app::ColumnChooser(grid(), &window));
  examiner.examine(app::ReportDialog("Failed", "Failures", {"one"}, {}, &window));
  examiner.examine(app::ProgressDialog("Working", &window));
  examiner.examine(app::dlgCompact(app::dlgCompact::Work::compact, "/data/glazing.mdb"));
  examiner.examine(app::dlgCompact(app::dlgCompact::Work::repair, ""));
  examiner.examine(app::IntegrationDialog({}, optics::kUsualStandard, &window));
}

TEST_F(WindowTest, EveryCommandHasItsOwnKeys) {
  QList<QKeySequence> shortcuts;
  for (const QAction* each : window.findChildren<QAction*>()) {
    // Others act where they have the focus.
    if (each->shortcutContext() != Qt::WindowShortcut) continue;
    for (const QKeySequence& shortcut : each->shortcuts()) {
      EXPECT_FALSE(shortcuts.contains(shortcut)) << shortcut.toString().toStdString();
      shortcuts << shortcut;
    }
  }
  EXPECT_GT(shortcuts.size(), 20);
}

/// Every entry of every menu can be reached by a letter of its own.
TEST_F(WindowTest, EveryMenuEntryHasItsOwnLetter) {
  QList<QMenu*> menus = window.findChildren<QMenu*>();
  for (const QMenu* menu : menus) {
    if (!menu->objectName().startsWith("mnu")) continue;
    QList<QKeySequence> letters;
    for (const QAction* each : menu->actions()) {
      if (each->isSeparator()) continue;
      const QKeySequence letter = QKeySequence::mnemonic(each->text());
      EXPECT_FALSE(letter.isEmpty()) << each->text().toStdString();
      EXPECT_FALSE(letters.contains(letter)) << each->text().toStdString();
      letters << letter;
    }
  }
}

}  // namespace orv::test
