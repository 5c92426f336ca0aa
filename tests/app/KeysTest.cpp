// Whoever has no mouse: the whole window by keys alone.
#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QDockWidget>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QTimer>
#include <set>

#include "app/WindowTest.h"
#include "database/OrvSchema.h"

namespace orv::test {

class KeysTest : public WindowTest {
 protected:
  std::string status() { return label("lblStatus").toStdString(); }
  std::string counts() { return label("lblCounts").toStdString(); }
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
  /// Plans that a dialog of this title comes, and goes by Escape.
  void expectDialog(const QString& title) {
    expected_ << title;
    dialogs.then([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  }
  void expectDialogsOf(const QString& title, int count) {
    for (int i = 0; i < count; ++i) expected_ << title;
    checkDialogs();
  }
  void checkDialogs() {
    QStringList titles;
    for (const SeenDialog& dialog : dialogs.seen()) titles << dialog.title;
    EXPECT_EQ(titles.join('|').toStdString(), expected_.join('|').toStdString());
  }
  /// Presses Tab until all that it reaches has been reached; where it goes before a part has the
  /// keyboard.
  std::set<QWidget*> goAround() {
    std::set<QWidget*> reached;
    for (int i = 0; i < 300 && reached.insert(focus()).second; ++i) press(Qt::Key_Tab);
    return reached;
  }

 private:
  QStringList expected_;
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
          << widget->objectName().toStdString() << " in "
          << widget->parentWidget()->objectName().toStdString();
    }
  }
}

TEST_F(KeysTest, ADaysWorkIsDoneWithoutAMouse) {
  const QString first = makeRows("a.mdb", 30);
  database::CreateEmptyDatabase(folder / "b.mdb")->close();
  resize(1366, 768);

  // Files are opened by a dialog, and the grid has the keyboard then.
  for (const QString& path : {first, QString::fromStdString(folder / "b.mdb")}) {
    dialogs.then([path](QWidget& dialog) {
      auto* name = dialog.findChild<QLineEdit*>("fileNameEdit");
      name->setText(path);  // keys would open a list of names before it
      QTest::keyClick(name, Qt::Key_Return);
    });
    press(Qt::Key_O, Qt::ControlModifier);
  }
  expectDialogsOf("Open new data source", 2);
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
  press(Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier);
  press(Qt::Key_Home, Qt::ControlModifier);
  for (int i = 0; i < 5; ++i) press(Qt::Key_Right);
  EXPECT_EQ(grid().model()->headerData(grid().currentIndex().column(), Qt::Horizontal).toString(),
            "Thickness (mm)");
  press(Qt::Key_S, Qt::AltModifier);
  chooseByLetters("D");
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
  press(Qt::Key_E, Qt::AltModifier);
  chooseByLetters("U");
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
  EXPECT_TRUE(label("lblStatus").startsWith("No records have been copied."));
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(label("lblPending"), "1 copied");

  // Every dialog opens and closes.
  goTo("RecordGrid", Qt::Key_Tab);
  press(Qt::Key_Down);
  expectDialog("Options");
  press(Qt::Key_Comma, Qt::ControlModifier);
  expectDialog("Find and Replace");
  press(Qt::Key_H, Qt::ControlModifier);
  expectDialog("Compare");
  press(Qt::Key_D, Qt::ControlModifier);
  expectDialog("Columns");
  press(Qt::Key_V, Qt::AltModifier);
  chooseByLetters("C");
  expectDialog("Export");
  press(Qt::Key_E, Qt::ControlModifier);
  expectDialog("ORV");
  press(Qt::Key_Delete);
  checkDialogs();

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
  press(Qt::Key_F, Qt::AltModifier);
  chooseByLetters("X");
  EXPECT_FALSE(window.isVisible());
}

}  // namespace orv::test
