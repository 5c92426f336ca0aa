// Work that takes long: the window stays alive meanwhile.
#include <utility>

#include "app/WindowTest.h"
#include "app/dialogs/ProgressDialog.h"
#include "database/TestDatabase.h"

namespace orv::test {

using LongWorkTest = WindowTest;

/// Notes how often the event loop has its turn, and a window is painted.
class Watch : public QObject {
 public:
  explicit Watch(QWidget& window) {
    window.installEventFilter(this);
    connect(&timer_, &QTimer::timeout, this, [this] {
      ++turns;
      if (whenIdle) whenIdle();
    });
    timer_.start(1);
  }

  std::function<void()> whenIdle;
  int turns = 0;
  int paints = 0;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints;
    return false;
  }

 private:
  QTimer timer_;
};

TEST_F(LongWorkTest, TheWindowStaysPaintedDuringAPasteThatIsCancelledBetweenTwoRecords) {
  constexpr int kPanes = 600;
  const auto connection = database::CreateEmptyDatabase(folder / "source.mdb");
  for (int i = 0; i < kPanes; ++i) {
    session.database.InsertPane(*makePane(std::to_string(i)), *connection);
  }
  connection->close();
  window.openPaths({file(folder / "source.mdb")});
  copyRows(0, kPanes - 1);
  window.openPaths({makeRows("target.mdb", 0)});

  Watch watch(find<QLabel>("lblStatus"));
  bool isCancelled = false;
  watch.whenIdle = [&] {
    auto* progress = window.findChild<app::ProgressDialog*>();
    if (progress == nullptr || watch.turns < 10 || watch.paints < 10) return;
    const QString status = progress->findChild<QLabel*>("lblProgressStatus")->text();
    if (status.startsWith("Writing") && !std::exchange(isCancelled, true)) {
      QTest::keyClick(progress, Qt::Key_Escape);
    }
  };
  dialogs.type("Copied");
  trigger("mnuEditPaste");
  EXPECT_EQ(dialogs.seen().size(), 1U) << dialogs.told();
  EXPECT_TRUE(isCancelled);
  EXPECT_EQ(status(), "Ready");
  EXPECT_GT(rows(), 0);
  EXPECT_LT(rows(), kPanes);
  EXPECT_TRUE(isEnabled("mnuEditPaste"));
}

TEST_F(LongWorkTest, ALargeSourceShowsItsFirstRowsBeforeAllAreRead) {
  constexpr int kPanes = 6000;
  window.openPaths({makeRows("large.mdb", kPanes)});
  window.repaint();
  EXPECT_GE(rows(), 100);
  EXPECT_LT(rows(), kPanes / 2);
  EXPECT_THAT(counts(), Begins("more than "));
  EXPECT_TRUE(QTest::qWaitFor([&] { return counts() == "6,000 records"; }));
  EXPECT_EQ(rows(), kPanes);
  QTest::keyClicks(&filter(2), "product 9");
  EXPECT_TRUE(QTest::qWaitFor([&] { return counts().endsWith(" of 6,000 records"); }));
  EXPECT_LT(rows(), kPanes);
  grid().setCurrentIndex(grid().model()->index(0, 5));
  trigger("mnuSortDescending");
  EXPECT_EQ(cell(0, 5), "12");
}

}  // namespace orv::test
