// The window as it starts, and its place on the screen.
#include <QComboBox>
#include <QRubberBand>
#include <QSettings>
#include <QSplitter>

#include "app/WindowTest.h"
#include "app/window/UserSettings.h"
#include "app/window/WindowGeometry.h"

namespace orv::test {

TEST_F(WindowTest, StartsWithNothingToWorkOn) {
  EXPECT_EQ(window.windowTitle(), "ORV database manager");
  EXPECT_EQ(tree().topLevelItemCount(), 0);
  EXPECT_EQ(text(), "(no data...)");
  EXPECT_FALSE(grid().isVisible());
  EXPECT_EQ(status(), "Ready");
  for (const char* name : {"mnuFileRemove", "mnuFileExport", "mnuEditCopy", "mnuEditPaste",
                           "mnuEditDelete", "mnuSortAscending", "mnuSortDescending"}) {
    EXPECT_FALSE(isEnabled(name)) << name;
  }
}

TEST(WindowGeometry, IsKeptInTwips) {
  app::WindowUserInterface ui;
  commands::Session session(ui);
  {
    app::frmMain window(session, ui);
    const double dpi = window.logicalDpiX();
    EXPECT_EQ(window.width(), qRound(6500 * dpi / 1440));
    EXPECT_EQ(window.pos().x(), qRound(1000 * dpi / 1440));
    window.show();
    window.move(40, 50);
    window.resize(640, 480);
    window.close();
  }
  QSettings settings = app::userSettings();
  settings.beginGroup("Settings");
  EXPECT_EQ(settings.childKeys(), QStringList({"MainHeight", "MainLeft", "MainTop", "MainWidth"}));
  app::frmMain again(session, ui);
  EXPECT_EQ(again.size(), QSize(640, 480));
  EXPECT_EQ(again.pos(), QPoint(40, 50));
}

TEST_F(WindowTest, TheStandardOfTheSpectraIsRemembered) {
  auto& chosen = find<QComboBox>("cboSpectrumStandard");
  EXPECT_EQ(chosen.currentText(), "EN 410");
  chosen.setCurrentIndex(2);
  emit chosen.activated(2);
  const auto remembered = [this] {
    return app::frmMain(session, ui).findChild<QComboBox*>("cboSpectrumStandard")->currentText();
  };
  EXPECT_EQ(remembered(), "ISO 9050");
  app::userSettings().setValue("Settings/SpectrumStandard", "en 410, perhaps");
  EXPECT_EQ(remembered(), "EN 410");
}

TEST(WindowGeometry, ThatNoScreenShowsIsBroughtBack) {
  QWidget window;
  app::WindowGeometry{-200000, 300000, 6500, 6500}.applyTo(window);
  EXPECT_TRUE(window.screen()->geometry().intersects(window.geometry()));
}

TEST_F(WindowTest, TheSplitterStaysOffTheEdges) {
  window.resize(900, 600);
  auto& splitter = find<QSplitter>("Splitter");
  const int least = qRound(500 * window.logicalDpiX() / 1440.0);
  const auto dragTo = [&](int x) {
    QSplitterHandle* handle = splitter.handle(1);
    QTest::mousePress(handle, Qt::LeftButton, {}, QPoint(1, 50));
    ASSERT_NE(splitter.findChild<QRubberBand*>(), nullptr);
    EXPECT_TRUE(splitter.findChild<QRubberBand*>()->isVisible());
    QTest::mouseMove(handle, handle->mapFromParent(QPoint(x, 50)));
    QTest::mouseRelease(handle, Qt::LeftButton, {}, handle->mapFromParent(QPoint(x, 50)));
  };
  dragTo(300);
  EXPECT_NEAR(tree().width(), 300, 3);
  dragTo(2);
  EXPECT_EQ(tree().width(), least);
  dragTo(2000);
  EXPECT_EQ(splitter.width() - splitter.handle(1)->x() - splitter.handleWidth(), least);
}

}  // namespace orv::test
