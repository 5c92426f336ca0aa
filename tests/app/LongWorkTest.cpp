// Work that takes long: the window stays alive meanwhile.
#include <QLineEdit>
#include <utility>

#include "app/WindowTest.h"
#include "app/dialogs/ProgressDialog.h"
#include "database/OrvSchema.h"

namespace orv::test {

class LongWorkTest : public WindowTest {
 protected:
  /// Makes an ORV database with panes of a short spectrum.
  QString makeDatabase(const char* name, int panes) {
    const std::string path = folder / name;
    const auto connection = database::CreateEmptyDatabase(path);
    for (int i = 0; i < panes; ++i) session.database.InsertPane(*makePane(i), *connection);
    connection->close();
    return QString::fromStdString(path);
  }

  /// Copies so many panes and opens a database for them, whose group will be asked for.
  void prepareToPaste(int panes) {
    window.openPaths({makeDatabase("source.mdb", panes)});
    trigger("mnuEditSelectAll");
    trigger("mnuEditCopy");
    window.openPaths({makeDatabase("target.mdb", 0)});
    dialogs.type("Copied");
  }

 private:
  static std::shared_ptr<GlazingData> makePane(int number) {
    constexpr int kWavelengths = 12;
    auto spectrum = std::make_shared<SpectralData>();
    spectrum->Allocate(kWavelengths - 1);
    spectrum->WavelengthUnit(kNanometers);
    for (int i = 0; i < kWavelengths; ++i) {
      spectrum->wl(i, 300.0F + 200.0F * static_cast<float>(i));
      spectrum->Tf(i, 0.8F);
      spectrum->Tb(i, 0.8F);
      spectrum->Rf(i, 0.07F);
      spectrum->Rb(i, 0.07F);
    }
    auto pane = std::make_shared<GlazingData>();
    pane->filename("pane" + std::to_string(number) + ".txt");
    pane->supplier("Maker");
    pane->group("Made");
    pane->Thickness(4);
    pane->Conductivity(1);
    pane->spectral_pane(true);
    pane->WavelengthUnit(kNanometers);
    pane->SpectralData(spectrum);
    return pane;
  }
};

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

TEST_F(LongWorkTest, TheWindowStaysPaintedWhileAThousandPanesArePasted) {
  constexpr int kPanes = 1000;
  prepareToPaste(kPanes);
  Watch watch(find<QLabel>("lblStatus"));
  trigger("mnuEditPaste");
  EXPECT_TRUE(dialogs.isDone());
  EXPECT_EQ(dialogs.seen().size(), 1U) << dialogs.texts().join('|').toStdString();
  EXPECT_EQ(rows(), kPanes);
  EXPECT_GT(watch.paints, 10);
  EXPECT_GT(watch.turns, 10);
}

TEST_F(LongWorkTest, APasteIsCancelledBetweenTwoRecords) {
  constexpr int kPanes = 300;
  prepareToPaste(kPanes);
  Watch watch(find<QLabel>("lblStatus"));
  bool isCancelled = false;
  watch.whenIdle = [&] {
    const auto* progress = window.findChild<app::ProgressDialog*>();
    if (progress == nullptr) return;
    const QString status = progress->findChild<QLabel*>("lblProgressStatus")->text();
    if (status.startsWith("Writing") && !std::exchange(isCancelled, true)) {
      QTest::keyClick(const_cast<app::ProgressDialog*>(progress), Qt::Key_Escape);
    }
  };
  trigger("mnuEditPaste");
  EXPECT_EQ(label("lblStatus"), "Ready");
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
  EXPECT_TRUE(label("lblCounts").startsWith("more than ")) << label("lblCounts").toStdString();
  EXPECT_TRUE(QTest::qWaitFor([&] { return label("lblCounts") == "6,000 records"; }));
  EXPECT_EQ(rows(), kPanes);
  QTest::keyClicks(&find<QLineEdit>("txtFilter2"), "product 9");
  EXPECT_TRUE(QTest::qWaitFor([&] { return label("lblCounts").endsWith(" of 6,000 records"); }));
  EXPECT_LT(rows(), kPanes);
  grid().setCurrentIndex(grid().model()->index(0, 5));
  trigger("mnuSortDescending");
  EXPECT_EQ(cell(0, 5), "12");
}

}  // namespace orv::test
