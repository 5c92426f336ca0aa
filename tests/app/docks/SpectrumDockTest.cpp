#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QMimeData>
#include <QTest>
#include <QToolBar>
#include <QWheelEvent>

#include "app/docks/Panes.h"
#include "app/docks/spectra/ExtraCurves.h"
#include "app/docks/spectra/IntegratedTable.h"
#include "app/docks/spectra/SpectrumDock.h"
#include "app/docks/spectra/SpectrumLegend.h"
#include "app/docks/spectra/SpectrumView.h"

namespace orv::app {
namespace {

class SpectrumDockTest : public testing::Test {
 protected:
  SpectrumDockTest() {
    dock_.resize(800, 400);
    dock_.show();
    view_ = dock_.findChild<SpectrumView*>();
    legend_ = dock_.findChild<SpectrumLegend*>();
    QApplication::processEvents();
  }

  void showTwoAngles() {
    dock_.showPanes({makePane("a", 0, {{300, 0.8F, 0.1F, 0.1F}, {2500, 0.6F, 0.1F, 0.1F}}),
                     makePane("a", 60, {{300, 0.5F, 0.2F, 0.2F}, {25000, 0.4F, 0.2F, 0.2F}})});
    QApplication::processEvents();
  }

  QAction* action(const QString& text) {
    for (QAction* action : dock_.findChild<QToolBar*>()->actions()) {
      if (action->text() == text) return action;
    }
    ADD_FAILURE() << "no action " << text.toStdString();
    return nullptr;
  }

  int visibleCurves() const {
    int count = 0;
    for (const auto* series : view_->chart()->series()) count += series->isVisible() ? 1 : 0;
    return count;
  }

  QString emptyText() const {
    const auto* label = dock_.findChild<QLabel*>("spectrumEmptyText");
    return label->isVisible() ? label->text() : QString();
  }

  SpectrumDock dock_;
  SpectrumView* view_;
  SpectrumLegend* legend_;
};

TEST_F(SpectrumDockTest, SaysWhyThereIsNoPlotAndCopiesOne) {
  EXPECT_EQ(emptyText(), "Select one or more records to see their spectra here.");
  EXPECT_FALSE(action("Save as…")->isEnabled());
  dock_.showPanes({makePane("bare", 0, {})});
  EXPECT_EQ(emptyText(), "The selected records have no spectral data.");
  EXPECT_FALSE(action("Copy")->isEnabled());
  showTwoAngles();
  EXPECT_EQ(emptyText(), "");
  EXPECT_TRUE(action("Save as…")->isEnabled());
  dock_.copy();
  EXPECT_TRUE(QApplication::clipboard()->mimeData()->hasImage());
  EXPECT_TRUE(QApplication::clipboard()->text().startsWith("Wavelength (nm)\ta, 0° T\t"));
  const auto& note = *dock_.findChild<QLabel*>("lblSpectrumNote");
  EXPECT_TRUE(note.isVisibleTo(&dock_));
  dock_.clear();
  EXPECT_FALSE(note.isVisibleTo(&dock_)) << "it was of other panes";
  EXPECT_EQ(emptyText(), "Select one or more records to see their spectra here.");
}

TEST_F(SpectrumDockTest, ShowsAndHidesCurvesOverAnAxisToChoose) {
  showTwoAngles();
  EXPECT_EQ(visibleCurves(), 6);
  action("Rf")->trigger();
  EXPECT_EQ(visibleCurves(), 4);
  legend_->topLevelItem(0)->setCheckState(0, Qt::Unchecked);
  EXPECT_EQ(visibleCurves(), 2);
  legend_->topLevelItem(0)->setCheckState(0, Qt::Checked);

  auto* angles = dock_.findChild<QComboBox*>();
  ASSERT_EQ(angles->count(), 3);
  angles->setCurrentIndex(2);
  emit angles->activated(2);
  EXPECT_EQ(visibleCurves(), 2);
  EXPECT_TRUE(legend_->topLevelItem(0)->isHidden());
  EXPECT_NEAR(dock_.plot().range.right(), 25, 1e-4);
  action("Logarithmic wavelengths")->trigger();
  EXPECT_NEAR(dock_.plot().range.right(), std::log10(25.0), 1e-4);
  EXPECT_EQ(view_->chart()->axes(Qt::Horizontal).first()->titleText(), "Wavelength (nm)");
  dock_.setWavelengthUnit(kMicrons);
  EXPECT_EQ(view_->chart()->axes(Qt::Horizontal).first()->titleText(), "Wavelength (µm)");
}

TEST_F(SpectrumDockTest, DrawsDifferenceMeanAndWeighting) {
  const auto a = makePane("a", 0, {{300, 0.8F, 0.1F, 0.1F}, {2500, 0.6F, 0.1F, 0.1F}});
  const auto b = makePane("b", 0, {{500, 0.5F, 0.2F, 0.2F}, {1100, 0.5F, 0.2F, 0.2F}});
  dock_.showPanes({a});
  EXPECT_FALSE(action("Difference")->isEnabled());
  EXPECT_FALSE(action("Mean and band")->isEnabled());
  dock_.showPanes({a, b, makePane("c", 0, {{300, 0.1F, 0, 0}, {900, 0.1F, 0, 0}})});
  EXPECT_EQ(visibleCurves(), 9);
  action("Mean and band")->trigger();
  EXPECT_EQ(visibleCurves(), 9 + 6);
  EXPECT_FALSE(action("Difference")->isEnabled()) << "of three";
  legend_->topLevelItem(2)->setCheckState(0, Qt::Unchecked);
  EXPECT_EQ(visibleCurves(), 6 + 6);
  action("Difference")->trigger();
  EXPECT_EQ(visibleCurves(), 6 + 6 + 3);
  EXPECT_NEAR(dock_.plot().range.top(), -0.1, 1e-6) << "the front reflectances";
  action("Rf")->trigger();
  action("Rb")->trigger();

  const auto extras = extraCurves(dock_.plot());
  ASSERT_EQ(extras.size(), 3U);
  const double at500 = 0.8 - 0.2 * 200 / 2200;
  const auto starts = [](const std::vector<QPointF>& line, double value) {
    ASSERT_EQ(line.size(), 2U) << "where both have values";
    EXPECT_NEAR(line[0].x(), 0.5, 1e-6);
    EXPECT_NEAR(line[1].x(), 1.1, 1e-6);
    EXPECT_NEAR(line[0].y(), value, 1e-6);
  };
  starts(extras[0].line, at500);
  starts(extras[0].below, 0.5);
  starts(extras[1].line, (at500 + 0.5) / 2);
  starts(extras[2].line, at500 - 0.5);

  action("Mean and band")->trigger();
  action("Difference")->trigger();
  action("Weighting of the standard")->trigger();
  const auto weights = extraCurves(dock_.plot());
  ASSERT_EQ(weights.size(), 2U);
  const auto peak = std::ranges::max_element(weights[1].line, {}, [](auto& p) { return p.y(); });
  EXPECT_NEAR(peak->x(), 0.555, 0.01) << "what the eye sees best";
  EXPECT_EQ(peak->y(), 1);
}

TEST_F(SpectrumDockTest, FollowsThePointerAndZoomsWithMouseAndKeys) {
  showTwoAngles();
  EXPECT_FALSE(view_->pointedWavelength());
  QTest::mouseMove(view_->viewport(), view_->chart()->plotArea().center().toPoint());
  ASSERT_TRUE(view_->pointedWavelength());
  EXPECT_NEAR(*view_->pointedWavelength(), dock_.plot().range.center().x(), 0.1);
  const QImage with = view_->grab().toImage();
  view_->pointAt({-1, -1});
  EXPECT_FALSE(view_->pointedWavelength());
  EXPECT_NE(view_->grab().toImage(), with);

  const QRectF full = dock_.plot().range;
  EXPECT_FALSE(action("Show everything")->isEnabled());

  const QPoint middle = view_->viewport()->rect().center();
  QWheelEvent wheel(middle, view_->viewport()->mapToGlobal(middle), {}, {0, 240}, Qt::NoButton,
                    Qt::ControlModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(view_->viewport(), &wheel);
  EXPECT_NEAR(dock_.plot().range.width(), full.width() / (1.25 * 1.25), 1e-6);
  EXPECT_NEAR(dock_.plot().range.height(), full.height(), 1e-9) << "with Ctrl wavelengths only";
  EXPECT_TRUE(action("Show everything")->isEnabled());
  QTest::mouseDClick(view_->viewport(), Qt::LeftButton, {}, middle);
  EXPECT_EQ(dock_.plot().range, full);

  const QRectF area = view_->chart()->plotArea();
  const QPoint corner = area.bottomRight().toPoint() - QPoint(2, 2);
  QTest::mousePress(view_->viewport(), Qt::LeftButton, {}, area.center().toPoint());
  QTest::mouseMove(view_->viewport(), corner);
  QTest::mouseRelease(view_->viewport(), Qt::LeftButton, {}, corner);
  EXPECT_NEAR(dock_.plot().range.left(), full.center().x(), 0.2);
  EXPECT_NEAR(dock_.plot().range.bottom(), 0.5, 0.02);
  QTest::keyClick(view_, Qt::Key_0);
  EXPECT_EQ(dock_.plot().range, full);
  QTest::keyClick(view_, Qt::Key_Minus);
  EXPECT_EQ(dock_.plot().range, full) << "there is nothing beyond everything";
}

TEST_F(SpectrumDockTest, ListsStoredValuesAndThoseOfTheChosenStandard) {
  auto* table = dock_.findChild<IntegratedTable*>();
  dock_.showPanes({makePane("bare", 0, {})});
  EXPECT_FALSE(table->isVisible());
  std::vector<Point> even;
  for (float wavelength = 300; wavelength <= 2500; wavelength += 50) {
    even.push_back({wavelength, 0.8F, 0.1F, 0.1F});
  }
  auto pane = makePane("a", 0, even);
  pane->Precalc_Tfvis(0.885F);
  dock_.showPanes({pane});
  EXPECT_TRUE(table->isVisible());
  EXPECT_EQ(table->item(4, 1)->text(), "≠ 0.800");
  EXPECT_NE(table->item(4, 1)->background(), table->item(4, 0)->background());
  table->selectRow(4);
  QTest::keySequence(table, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text(),
            "\ta (stored)\ta (computed)\nVisible T, front\t0.885\t0.800\n");

  auto* standards = dock_.findChild<QComboBox*>("cboSpectrumStandard");
  const int rows = table->rowCount();
  std::vector<optics::Standard> chosen;
  QObject::connect(&dock_, &SpectrumDock::standardChosen,
                   [&](optics::Standard standard) { chosen.push_back(standard); });
  dock_.setStandard(optics::Standard::iso9050);
  EXPECT_EQ(standards->currentText(), "ISO 9050");
  EXPECT_TRUE(chosen.empty()) << "that was not the user";
  standards->setCurrentIndex(0);
  emit standards->activated(0);
  EXPECT_EQ(chosen, std::vector{optics::Standard::nfrc300});
  EXPECT_GT(table->rowCount(), rows) << "NFRC 300 has more values than EN 410";
}

}  // namespace
}  // namespace orv::app
