// The grid of records.
#include <QClipboard>
#include <QListWidget>

#include "app/WindowTest.h"
#include "support/ReadFile.h"

namespace orv::test {

class GridTest : public WindowTest {
 protected:
  void SetUp() override {
    ORV_NEEDS_CORPUS();
    resize(1000, 600);
    openCopy("glazing.mdb");
  }
};

TEST_F(GridTest, SelectsOneBlockOfRows) {
  EXPECT_LT(grid().fontMetrics().horizontalAdvance(cell(0, 0)), grid().columnWidth(0));
  clickCell(2, 1);
  EXPECT_EQ(counts(), "200 records, 1 selected");
  clickCell(5, 1, Qt::ShiftModifier);
  EXPECT_EQ(counts(), "200 records, 4 selected");
  clickCell(3, 1, Qt::ShiftModifier);
  EXPECT_EQ(counts(), "200 records, 2 selected");
  clickCell(9, 1, Qt::ControlModifier);
  const auto rows = grid().selectedRows();
  EXPECT_EQ(rows.count(), static_cast<int>(grid().selectionModel()->selectedRows().size()));
  EXPECT_TRUE(isEnabled("mnuEditCopy"));
  EXPECT_FALSE(isEnabled("mnuEditIntegrate")) << "values cannot be stored here";
  trigger("mnuEditDelete");
  EXPECT_EQ(dialogs.texts().back(), "This datasource does not allow deleting any records.");
  selectNode({"glazing.mdb"});
  EXPECT_FALSE(isEnabled("mnuEditCopy"));
}

TEST_F(GridTest, SortsNumbersAsNumbers) {
  const int thickness = column("Thickness (mm)");
  EXPECT_TRUE(grid().model()->index(0, thickness).data(Qt::TextAlignmentRole).toInt() &
              Qt::AlignRight);
  clickCell(0, thickness);
  trigger("mnuSortAscending");
  EXPECT_EQ(cell(0, thickness), "3");
  EXPECT_EQ(cell(199, thickness), "12");
  grid().setCurrentIndex(grid().model()->index(0, thickness));
  trigger("mnuSortDescending");
  EXPECT_EQ(cell(0, thickness), "12");
  EXPECT_EQ(cell(0, 0), "PANE00009.DAT");

  clickCell(0, thickness);
  auto& header = grid().filterHeader();
  const QPoint title(header.sectionViewportPosition(0) + 20, 5);
  QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, title);
  EXPECT_EQ(cell(0, 0), "PANE00001.DAT");
  trigger("mnuSortDescending");  // on the column whose heading was clicked last
  EXPECT_EQ(cell(0, 0), "PANE00200.DAT");
}

TEST_F(GridTest, FiltersAsOneTypes) {
  clickCell(4, 0);
  ASSERT_TRUE(isEnabled("mnuEditCopy"));
  QTest::keyClicks(&filter(0), "0001");
  EXPECT_FALSE(isEnabled("mnuEditCopy")) << "the row is filtered away";
  EXPECT_EQ(rows(), 11);  // PANE00001 and PANE00010 to PANE00019
  EXPECT_EQ(counts(), "11 of 200 records");
  QTest::keyClicks(&filter(column("Thickness (mm)")), ">=10");
  EXPECT_EQ(rows(), 3);
  clickCell(0, 0);
  trigger("mnuViewRefresh");
  EXPECT_EQ(rows(), 3);
  QTest::keyClick(&filter(0), Qt::Key_Escape);
  EXPECT_EQ(rows(), 60);
  trigger("mnuViewFilters");
  EXPECT_EQ(rows(), 200);
  EXPECT_FALSE(filter(0).isVisible());
}

TEST_F(GridTest, FindsATextInAnyColumn) {
  trigger("mnuEditFind");
  auto& text = find<QLineEdit>("txtFind");
  QTest::keyClicks(&text, "maker 5");
  EXPECT_EQ(grid().currentIndex().row(), 4);
  EXPECT_EQ(grid().currentIndex().column(), column("Manufacturer"));
  trigger("mnuEditFindNext");
  EXPECT_NE(grid().currentIndex().row(), 4);
  trigger("mnuEditFindPrevious");
  EXPECT_EQ(grid().currentIndex().row(), 4);
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

TEST_F(GridTest, CopiesAndSavesWhatItShowsAsText) {
  clickCell(0, 0);
  clickCell(1, 0, Qt::ShiftModifier);
  trigger("mnuEditCopyText");
  const QStringList lines = QGuiApplication::clipboard()->text().split('\n');
  ASSERT_EQ(lines.size(), 4);
  EXPECT_EQ(lines[0].split('\t').size(), columns());
  EXPECT_EQ(lines[0].split('\t')[column("Thickness (mm)")], "Thickness (mm)");
  EXPECT_TRUE(lines[2].startsWith("PANE00002.DAT\t"));
  clickCell(3, 0);
  trigger("mnuEditCopyCell");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "PANE00004.DAT");

  QTest::keyClicks(&filter(column("Thickness (mm)")), ">=10");
  dialogs.choose({file(folder / "table.csv")});
  trigger("mnuEditSaveTable");
  const auto saved = QString::fromStdString(readFile(folder / "table.csv")).split("\r\n");
  EXPECT_THAT(saved[0], Contains(",Thickness (mm),"));
  EXPECT_EQ(saved.size(), 1 + rows() + 1);
}

}  // namespace orv::test
