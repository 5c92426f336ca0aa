// Whoever has no mouse: the whole window by keys alone.
#include <QApplication>
#include <QDockWidget>

#include "app/WindowTest.h"

namespace orv::test {

class KeysTest : public WindowTest {
 protected:
  QWidget* focus() { return window.focusWidget(); }
  bool isIn(const char* name) {
    auto& place = find<QWidget>(name);
    return focus() != nullptr && (focus() == &place || place.isAncestorOf(focus()));
  }
  void goTo(const char* name, Qt::Key tab) {
    const auto modifiers = tab == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier;
    for (int i = 0; i < 100 && !isIn(name); ++i) press(tab, modifiers);
    ASSERT_TRUE(isIn(name)) << name;
  }
  /// Chooses in a menu that is open by the letters of its entries.
  void chooseByLetters(const char* letters) {
    for (; *letters != 0; ++letters) press(QKeySequence(QString(QLatin1Char(*letters)))[0].key());
  }
  /// The same in a menu of the bar.
  void menu(Qt::Key key, const char* letters) {
    press(key, Qt::AltModifier);
    chooseByLetters(letters);
  }
  /// Opens the menu of what has the keyboard, and chooses in it, or leaves it where there are no
  /// letters. It is open while this runs.
  void contextMenu(const char* letters) {
    bool isOpen = false;
    QTimer::singleShot(100, &window, [&] {
      isOpen = QApplication::activePopupWidget() != nullptr;
      chooseByLetters(letters);
      while (QApplication::activePopupWidget() != nullptr) press(Qt::Key_Escape);
    });
    press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(isOpen);
  }
  QStringList titles() {
    QStringList titles;
    for (const SeenDialog& dialog : dialogs.seen()) titles << dialog.title;
    return titles;
  }
  /// Presses Tab until all that it reaches has been reached; where it goes before a part has the
  /// keyboard.
  std::set<QWidget*> goAround() {
    std::set<QWidget*> reached;
    for (int i = 0; i < 300 && reached.insert(focus()).second; ++i) press(Qt::Key_Tab);
    return reached;
  }
};

TEST_F(KeysTest, TabReachesAllThatTakesTheKeyboard) {
  window.openPaths({makeRows("a.mdb", 12)});
  resize(1366, 768);
  press(Qt::Key_Down);
  for (const int key : {Qt::Key_F7, Qt::Key_F8}) press(key);
  for (const char* dock : {"SpectrumDock", "DetailsDock"}) {
    if (!find<QDockWidget>(dock).isVisible()) find<QDockWidget>(dock).show();
  }
  press(Qt::Key_F, Qt::ControlModifier);
  for (const char* dock : {"mnuToolsAudit", "mnuViewChanges", "mnuViewLookups", "mnuViewCompare"}) {
    trigger(dock);
    QCoreApplication::processEvents();
    grid().setFocus();
    const std::set<QWidget*> reached = goAround();
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      const bool isMeant = widget->isVisible() && widget->isEnabled() &&
                           (widget->focusPolicy() & Qt::TabFocus) != 0 &&
                           widget->focusProxy() == nullptr && !widget->visibleRegion().isEmpty();
      EXPECT_TRUE(!isMeant || reached.contains(widget))
          << dock << ": " << widget->metaObject()->className() << ' '
          << widget->objectName().toStdString();
    }
  }
}

TEST_F(KeysTest, ADaysWorkIsDoneWithoutAMouse) {
  const QString first = makeRows("a.mdb", 30);
  const QString second = makeRows("b.mdb", 0);
  resize(1366, 768);

  // Files are opened by a dialog, and the grid has the keyboard then.
  for (const QString& path : {first, second}) {
    dialogs.choose({path});
    press(Qt::Key_O, Qt::ControlModifier);
  }
  ASSERT_EQ(tree().topLevelItemCount(), 2);
  EXPECT_TRUE(isIn("RecordGrid"));

  // The tree: up to the first database.
  goTo("tvDataSources", Qt::Key_Backtab);
  press(Qt::Key_Home);
  press(Qt::Key_Return);
  EXPECT_EQ(counts(), "30 records");
  contextMenu("");

  // Filter, rows, sorting by a menu, by two columns.
  goTo("RecordGrid", Qt::Key_Tab);
  press(Qt::Key_L, Qt::ControlModifier);
  type("1");
  EXPECT_EQ(counts(), "12 of 30 records");
  press(Qt::Key_Down);
  EXPECT_TRUE(isIn("RecordGrid"));
  EXPECT_EQ(grid().selectedRows().low, 0);
  press(Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
  press(Qt::Key_Home, Qt::ControlModifier);
  for (int i = 0; i < 5; ++i) press(Qt::Key_Right);
  EXPECT_EQ(grid().currentIndex().column(), column("Thickness (mm)"));
  menu(Qt::Key_S, "D");
  EXPECT_EQ(cell(0, 5), "12");
  for (int i = 0; i < 4; ++i) press(Qt::Key_Left);
  contextMenu("MB");
  EXPECT_EQ(cell(0, 1), "PANE0009.DAT");
  EXPECT_EQ(cell(1, 1), "PANE0019.DAT");

  // A field is edited, a wrong value told, and the change taken back and made again.
  press(Qt::Key_Home, Qt::ControlModifier);
  for (int i = 0; i < 5; ++i) press(Qt::Key_Right);
  press(Qt::Key_F2);
  type("x");
  press(Qt::Key_Down);
  EXPECT_TRUE(find<QLabel>("lblCellRefusal").isVisible());
  press(Qt::Key_A, Qt::ControlModifier);
  type("8");
  press(Qt::Key_Return);
  EXPECT_EQ(cell(0, 5), "8");
  EXPECT_TRUE(find<QDockWidget>("ChangesDock").isVisible());
  menu(Qt::Key_E, "U");
  EXPECT_EQ(cell(0, 5), "12");
  press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(status(), "1 field of 1 record saved.");

  // As a table to a spreadsheet, and back from there.
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  press(Qt::Key_Home, Qt::ControlModifier);
  press(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(status(), "Nothing is changed: the fields hold this already.");
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_THAT(status(), Begins("No records have been copied."));
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(label("lblPending"), "1 copied");

  // Every dialog opens and closes.
  goTo("RecordGrid", Qt::Key_Tab);
  press(Qt::Key_Down);
  for (const Qt::Key key : {Qt::Key_Comma, Qt::Key_H, Qt::Key_D, Qt::Key_E}) {
    press(key, Qt::ControlModifier);
  }
  menu(Qt::Key_V, "C");
  press(Qt::Key_Delete);
  EXPECT_EQ(titles(), (QStringList{"Open new data source", "Open new data source", "Options",
                                   "Find and Replace", "Compare", "Export", "Columns", "ORV"}));

  // Out of the find bar and the docks with Escape, and off.
  press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(isIn("FindBar"));
  press(Qt::Key_Escape);
  EXPECT_TRUE(isIn("RecordGrid"));
  press(Qt::Key_F9);
  EXPECT_TRUE(find<QDockWidget>("AuditDock").isVisible());
  goTo("FindingsTree", Qt::Key_Tab);
  press(Qt::Key_Escape);
  EXPECT_TRUE(isIn("RecordGrid"));
  menu(Qt::Key_F, "X");
  EXPECT_FALSE(window.isVisible());
}

}  // namespace orv::test
