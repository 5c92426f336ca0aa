// The grid of records.
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <fstream>
#include <iterator>

#include "app/WindowTest.h"

namespace orv::test {

class GridTest : public WindowTest {
 protected:
  void SetUp() override {
    ORV_NEEDS_CORPUS();
    resize(1000, 600);
    openCopy("glazing.mdb");
  }
  int column(const QString& title) {
    for (int i = 0; i < grid().model()->columnCount(); ++i) {
      if (grid().model()->headerData(i, Qt::Horizontal).toString() == title) return i;
    }
    throw std::logic_error("no column " + title.toStdString());
  }
  QLineEdit& filter(int column) {
    return find<QLineEdit>(qPrintable(QStringLiteral("txtFilter%1").arg(column)));
  }
  void click(int row, int column, Qt::KeyboardModifiers modifiers = {}) {
    const QRect place = grid().visualRect(grid().model()->index(row, column));
    QTest::mouseClick(grid().viewport(), Qt::LeftButton, modifiers, place.center());
  }
};

TEST_F(GridTest, SelectsOneBlockOfRows) {
  click(2, 1);
  EXPECT_EQ(label("lblCounts"), "200 records, 1 selected");
  click(5, 1, Qt::ShiftModifier);
  EXPECT_EQ(label("lblCounts"), "200 records, 4 selected");
  click(3, 1, Qt::ShiftModifier);
  EXPECT_EQ(label("lblCounts"), "200 records, 2 selected");
  click(9, 1, Qt::ControlModifier);
  const auto rows = grid().selectedRows();
  EXPECT_EQ(rows.count(), static_cast<int>(grid().selectionModel()->selectedRows().size()));
  EXPECT_TRUE(isEnabled("mnuEditCopy"));
  selectNode({"glazing.mdb"});
  EXPECT_FALSE(isEnabled("mnuEditCopy"));
}

TEST_F(GridTest, SortsNumbersAsNumbers) {
  const int thickness = column("Thickness (mm)");
  click(0, thickness);
  trigger("mnuSortAscending");
  EXPECT_EQ(cell(0, thickness), "3");
  EXPECT_EQ(cell(199, thickness), "12");
  grid().setCurrentIndex(grid().model()->index(0, thickness));
  trigger("mnuSortDescending");
  EXPECT_EQ(cell(0, thickness), "12");
  EXPECT_EQ(cell(0, 0), "PANE00009.DAT");

  click(0, thickness);
  auto& header = grid().filterHeader();
  const QPoint title(header.sectionViewportPosition(0) + 20, 5);
  QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, title);
  EXPECT_EQ(cell(0, 0), "PANE00001.DAT");
  trigger("mnuSortDescending");  // on the column whose heading was clicked last
  EXPECT_EQ(cell(0, 0), "PANE00200.DAT");
}

TEST_F(GridTest, FiltersAsOneTypes) {
  QTest::keyClicks(&filter(0), "0001");
  EXPECT_EQ(rows(), 11);  // PANE00001 and PANE00010 to PANE00019
  EXPECT_EQ(label("lblCounts"), "11 of 200 records");
  QTest::keyClicks(&filter(column("Thickness (mm)")), ">=10");
  EXPECT_EQ(rows(), 3);
  click(0, 0);
  trigger("mnuViewRefresh");
  EXPECT_EQ(rows(), 3);
  QTest::keyClick(&filter(0), Qt::Key_Escape);
  EXPECT_EQ(rows(), 60);
  trigger("mnuViewFilters");
  EXPECT_EQ(rows(), 200);
  EXPECT_FALSE(filter(0).isVisible());
}

TEST_F(GridTest, ARowThatIsFilteredAwayIsNotSelected) {
  click(4, 0);
  ASSERT_TRUE(isEnabled("mnuEditCopy"));
  QTest::keyClicks(&filter(0), "00001");
  EXPECT_FALSE(isEnabled("mnuEditCopy"));
}

TEST_F(GridTest, FindsATextInAnyColumn) {
  trigger("mnuEditFind");
  auto& text = find<QLineEdit>("txtFind");
  QTest::keyClicks(&text, "maker 5");
  EXPECT_EQ(grid().currentIndex().row(), 4);
  EXPECT_EQ(grid().currentIndex().column(), column("Manufacturer"));
  const int first = grid().currentIndex().row();
  trigger("mnuEditFindNext");
  EXPECT_NE(grid().currentIndex().row(), first);
  trigger("mnuEditFindPrevious");
  EXPECT_EQ(grid().currentIndex().row(), first);
  QTest::keyClick(&text, Qt::Key_Escape);
  EXPECT_FALSE(text.isVisible());
}

TEST_F(GridTest, KeepsColumnsForTheRun) {
  const int maker = column("Manufacturer");
  grid().setColumnWidth(1, 222);
  dialogs.then([&](QWidget& dialog) {
    dialog.findChild<QLineEdit*>("txtColumnSearch")->setText("manu");
    auto* list = dialog.findChild<QListWidget*>("lstColumns");
    for (int i = 0; i < list->count(); ++i) EXPECT_EQ(list->item(i)->isHidden(), i != maker);
    list->item(maker)->setCheckState(Qt::Unchecked);
    dialog.close();
  });
  trigger("mnuViewColumns");
  EXPECT_TRUE(grid().isColumnHidden(maker));
  openCopy("orvdata-3.0.0.mdb");
  EXPECT_FALSE(grid().isColumnHidden(maker));
  selectNode({"glazing.mdb", "Panes"});
  EXPECT_TRUE(grid().isColumnHidden(maker));
  EXPECT_EQ(grid().columnWidth(1), 222);
}

TEST_F(GridTest, CopiesFieldsAsText) {
  click(0, 0);
  click(1, 0, Qt::ShiftModifier);
  trigger("mnuEditCopyText");
  const QStringList lines = QGuiApplication::clipboard()->text().split('\n');
  ASSERT_EQ(lines.size(), 4);
  EXPECT_EQ(lines[0].split('\t').size(), grid().model()->columnCount());
  EXPECT_EQ(lines[0].split('\t')[column("Thickness (mm)")], "Thickness (mm)");
  EXPECT_TRUE(lines[2].startsWith("PANE00002.DAT\t"));
  click(3, 0);
  trigger("mnuEditCopyCell");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "PANE00004.DAT");
}

TEST_F(GridTest, SavesWhatItShowsAsATable) {
  QTest::keyClicks(&filter(column("Thickness (mm)")), ">=10");
  const std::string path = folder / "table.csv";
  dialogs.choose({QString::fromStdString(path)});
  trigger("mnuEditSaveTable");
  std::ifstream file(path, std::ios::binary);
  std::string headings;
  std::getline(file, headings);
  EXPECT_NE(headings.find(",Thickness (mm),"), std::string::npos) << headings;
  EXPECT_TRUE(headings.ends_with('\r'));
  EXPECT_EQ(std::count(std::istreambuf_iterator<char>(file), {}, '\n'), rows());
}

TEST_F(GridTest, ShowsColumnsThatFitWithNumbersToTheRight) {
  const int thickness = column("Thickness (mm)");
  const QVariant alignment = grid().model()->index(0, thickness).data(Qt::TextAlignmentRole);
  EXPECT_TRUE(alignment.toInt() & Qt::AlignRight);
  for (int i = 0; i < grid().model()->columnCount(); ++i) {
    const QString text = cell(0, i);
    EXPECT_LT(grid().fontMetrics().horizontalAdvance(text), grid().columnWidth(i))
        << text.toStdString();
  }
}

TEST_F(GridTest, IsUsedWithTheKeyboardAlone) {
  grid().setFocus();
  trigger("mnuViewEditFilter");
  QTest::qWait(1);
  ASSERT_EQ(window.focusWidget(), &filter(0));
  QTest::keyClicks(window.focusWidget(), "0002");
  QTest::keyClick(window.focusWidget(), Qt::Key_Down);
  EXPECT_EQ(window.focusWidget(), &grid());
  EXPECT_EQ(grid().selectedRows().low, 0);
  QTest::keyClick(&grid(), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(grid().selectedRows().count(), 2);
}

}  // namespace orv::test
