// The first column of the grid that stands still.
#include <QScrollBar>

#include "app/WindowTest.h"

namespace orv::test {

class FrozenColumnTest : public WindowTest {
 protected:
  FrozenColumnTest() {
    window.resize(640, 480);
    window.openPaths({makeRows("a.mdb", 40)});
    header().resizeSection(0, 90);
  }
  app::FilterHeader& header() { return grid().filterHeader(); }
  void scroll() {
    grid().horizontalScrollBar()->setValue(230);
    QTest::qWait(20);
  }
  /// What is seen of the first column's headings and cells, without its right edge.
  QImage seen() { return grid().grab({0, 0, 88, grid().height() - 30}).toImage(); }
  QWidget& widgetAt(const QPoint& place) { return *grid().childAt(place); }
  void click(const QPoint& place) {
    QWidget& widget = widgetAt(place);
    QTest::mouseClick(&widget, Qt::LeftButton, {}, widget.mapFrom(&grid(), place));
  }
};

TEST_F(FrozenColumnTest, StaysInSightAndIsWorkedWithWhereItStands) {
  QTest::qWait(50);
  const QImage before = seen();
  scroll();
  EXPECT_NE(seen(), before);
  trigger("mnuViewFreeze");
  QTest::qWait(20);
  EXPECT_EQ(seen(), before) << "headings, filter and cells";

  const int third = grid().viewport()->y() + grid().rowViewportPosition(3) + 4;
  click({20, third});
  EXPECT_EQ(grid().selectedRows().low, 3);
  EXPECT_EQ(grid().currentIndex().column(), 0);
  EXPECT_EQ(grid().horizontalScrollBar()->value(), 230) << "nothing has to be scrolled to";
  for (int i = 0; i < 5; ++i) QTest::keyClick(&grid(), Qt::Key_Right);
  for (int i = 0; i < 3; ++i) QTest::keyClick(&grid(), Qt::Key_Left);
  EXPECT_EQ(grid().currentIndex().column(), 2);
  EXPECT_GE(grid().columnViewportPosition(2), 90) << "not below the column that stands";

  scroll();
  click({20, 5});
  click({20, 5});
  EXPECT_EQ(cell(0, 0), "40") << "sorted the other way round";
  const QPoint placeOfFilter(20, filter(0).geometry().center().y());
  EXPECT_EQ(&widgetAt(placeOfFilter), &filter(0));
  QTest::keyClicks(&filter(0), "=7");
  EXPECT_EQ(rows(), 1);

  app::frmMain again(session, ui);
  EXPECT_TRUE(again.findChild<QAction*>("mnuViewFreeze")->isChecked()) << "remembered";
  trigger("mnuViewFreeze");
  EXPECT_LT(header().sectionViewportPosition(0), 0);
  EXPECT_NE(&widgetAt(placeOfFilter), &filter(0));
}

}  // namespace orv::test
