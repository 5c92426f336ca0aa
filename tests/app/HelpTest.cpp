// Whether everything that a user can use says what it is: to the eye, which no text is cut off for,
// to What's This and to a screen reader.
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QDockWidget>
#include <QGraphicsView>
#include <QHeaderView>
#include <QMainWindow>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSplitter>
#include <QTabBar>
#include <QTableView>
#include <QToolBar>
#include <QToolButton>

#include "app/WindowTest.h"
#include "app/dialogs/CompareDialog.h"
#include "app/dialogs/ConflictDialog.h"
#include "app/dialogs/GuideWindow.h"
#include "app/dialogs/IntegrationDialog.h"
#include "app/dialogs/KeysDialog.h"
#include "app/dialogs/ProgressDialog.h"
#include "app/dialogs/ReplaceDialog.h"
#include "app/dialogs/ReportDialog.h"
#include "app/dialogs/dlgCompact.h"
#include "app/dialogs/dlgExport.h"
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

/// Whether a widget has not the room for its text.
bool isCut(const QWidget& widget) {
  const QSize need = widget.sizeHint();
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    if (label->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored)
      return false;  // it shortens it
    if (label->wordWrap()) return label->heightForWidth(label->width()) > label->height();
    return need.width() > label->width() || need.height() > label->height() + 1;
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    return !button->text().isEmpty() && button->objectName() != "qt_toolbar_ext_button" &&
           need.width() > button->width() + 1;
  }
  if (const auto* list = qobject_cast<const QComboBox*>(&widget)) {
    QStyleOptionComboBox option;
    option.initFrom(list);
    option.editable = list->isEditable();
    const QRect field = list->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                      QStyle::SC_ComboBoxEditField, list);
    return list->fontMetrics().horizontalAdvance(list->currentText()) > field.width();
  }
  if (const auto* line = qobject_cast<const QLineEdit*>(&widget)) {
    constexpr int kMargins = 8;
    const int text = line->fontMetrics().horizontalAdvance(line->placeholderText());
    const bool isFilter = line->objectName().startsWith("txtFilter");  // as narrow as its column
    return !isFilter && text + kMargins > line->width();
  }
  return false;
}

/// Whether the user gives it its width: beside the plot.
bool isBesidePlot(const QWidget& widget) {
  const QWidget* parent = widget.parentWidget();
  while (parent != nullptr && !isAny<QSplitter, QMainWindow>(*parent))
    parent = parent->parentWidget();
  return parent != nullptr && isAny<QSplitter>(*parent) &&
         !isAny<QMainWindow>(*parent->parentWidget());
}

class Examiner {
 public:
  void examine(QWidget&& window) {
    window.show();
    examine(window);
  }
  /// One that is shown.
  void examine(QWidget& window) {
    QTest::qWait(50);  // until its parts have found their places
    window_ = nameOf(window);
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
      if (!widget->isVisible() || isPartOfAnother(*widget) || isBesidePlot(*widget)) continue;
      EXPECT_FALSE(isCut(*widget)) << window_ << ": cut: " << nameOf(*widget);
    }
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
  resize(1366, 768);
  openCopy("glazing.mdb");
  openCopy("orvdata-3.0.0.mdb");
  selectRows(1, 2);
  trigger("mnuEditFind");
  Examiner examiner;
  for (QDockWidget* dock : window.findChildren<QDockWidget*>()) {
    dock->show();
    dock->raise();
    examiner.examine(window);
  }
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
  examiner.examine(app::ReplaceDialog(grid(), 1, &window));
  examiner.examine(app::CompareDialog(session.MainDataSources, tree().selectedKeys()[0], {}));
  examiner.examine(app::ConflictDialog({{"pane", "thickness", "3", "4", "5"}}, &window));
  examiner.examine(app::dlgExport({}, &window));
}

/// What can have the keyboard is in the tree that screen readers go through, under a name.
TEST_F(WindowTest, ScreenReadersFindAllThatTakesTheKeyboard) {
  window.openPaths({makeRows("a.mdb", 3)});
  resize(1366, 768);
  selectRows(0, 0);
  for (const char* dock : {"mnuEditFind", "mnuToolsAudit"}) trigger(dock);
  std::set<QObject*> found;
  QStringList names;
  const std::function<void(QAccessibleInterface*)> walk = [&](QAccessibleInterface* place) {
    found.insert(place->object());
    if (place->tableInterface() != nullptr) return;
    for (int i = 0; i < place->childCount(); ++i) {
      QAccessibleInterface* child = place->child(i);
      if (child == nullptr || child->object() == nullptr) continue;
      EXPECT_EQ(child->parent(), place) << nameOf(*child->object());
      EXPECT_EQ(place->indexOfChild(child), i) << nameOf(*child->object());
      if (qobject_cast<QLineEdit*>(child->object())) names << child->text(QAccessible::Name);
      walk(child);
    }
  };
  walk(QAccessible::queryAccessibleInterface(&window));
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    const bool isMeant = widget->isVisible() && widget->focusPolicy() != Qt::NoFocus &&
                         !isPartOfAnother(*widget) && (isEdit(*widget) || isGrid(*widget));
    EXPECT_TRUE(!isMeant || found.contains(widget)) << nameOf(*widget);
  }
  for (const char* name : {"Filter of Name", "Filter of Thickness (mm)", "Text to find"}) {
    EXPECT_THAT(names, Contains(name));
  }
}

/// Every command that has keys, and every entry of every menu by its letter.
TEST_F(WindowTest, EveryCommandHasKeysOfItsOwn) {
  const auto add = [](QList<QKeySequence>& taken, const QKeySequence& keys, const QAction& action) {
    EXPECT_FALSE(keys.isEmpty() || taken.contains(keys)) << action.text().toStdString();
    taken << keys;
  };
  QList<QKeySequence> shortcuts;
  for (const QAction* each : window.findChildren<QAction*>()) {
    // Others act where they have the focus.
    if (each->shortcutContext() != Qt::WindowShortcut) continue;
    for (const QKeySequence& shortcut : each->shortcuts()) add(shortcuts, shortcut, *each);
  }
  EXPECT_GT(shortcuts.size(), 20);
  for (const QMenu* menu : window.findChildren<QMenu*>()) {
    if (!menu->objectName().startsWith("mnu")) continue;
    QList<QKeySequence> letters;
    for (const QAction* each : menu->actions()) {
      if (!each->isSeparator()) add(letters, QKeySequence::mnemonic(each->text()), *each);
    }
  }
}

}  // namespace orv::test
