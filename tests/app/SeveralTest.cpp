// Several records at once: pinned ones, many of them, and such that are no panes.
#include <QAbstractSeries>
#include <QDir>
#include <QFile>
#include <QToolButton>

#include "app/WindowTest.h"
#include "app/docks/details/DetailsTree.h"
#include "app/docks/spectra/SpectrumDock.h"
#include "app/docks/spectra/SpectrumLegend.h"
#include "app/docks/spectra/SpectrumView.h"

namespace orv::test {

class SeveralTest : public WindowTest {
 protected:
  SeveralTest() {
    window.resize(1366, 768);
    trigger("mnuViewSpectrum");
    trigger("mnuViewDetails");
  }

  void pressFile(const QString& name) {
    for (int row = 0; row < rows(); ++row) {
      if (cell(row, 0) == name) return clickCell(row, 0);
    }
    FAIL() << "no row " << name.toStdString();
  }

  app::SpectrumDock& dock() { return find<app::SpectrumDock>("SpectrumDock"); }
  app::SpectrumLegend& legend() { return *window.findChild<app::SpectrumLegend*>(); }
  app::DetailsTree& details() { return *window.findChild<app::DetailsTree*>(); }

  /// What the plot lists, when that has come to be this.
  bool plots(const QStringList& labels) {
    return QTest::qWaitFor([&] { return plotted() == labels; });
  }
  QStringList plotted() {
    QStringList labels;
    for (int i = 0; i < legend().topLevelItemCount(); ++i) {
      labels << legend().topLevelItem(i)->text(0);
    }
    return labels;
  }
  void pressPin(int row) {
    QTest::qWait(30);  // until the list is laid out
    const QRect place = legend().visualRect(legend().model()->index(row, 1));
    ASSERT_TRUE(legend().viewport()->rect().contains(place.center()));
    QTest::mouseClick(legend().viewport(), Qt::LeftButton, {}, place.center());
  }
  int curves() {
    int count = 0;
    for (const auto* series : window.findChild<app::SpectrumView*>()->chart()->series()) {
      count += series->isVisible() ? 1 : 0;
    }
    return count;
  }
  QStringList detailsOf(const QString& field) {
    for (const QStringList& row : details().rows(false)) {
      if (row.front() == field) return row;
    }
    return {};
  }
};

TEST_F(SeveralTest, WhatIsPinnedStaysBesideWhatIsSelected) {
  openExamples("panes");
  pressFile("clear_4.txt");
  ASSERT_TRUE(plots({"clear_4.txt"}));
  pressPin(0);
  pressFile("lowe_4.txt");
  ASSERT_TRUE(plots({"clear_4.txt", "lowe_4.txt"}));
  EXPECT_EQ(curves(), 6);
  EXPECT_EQ(details().rows(false).front(),
            (QStringList{"Field", "clear_4.txt", "lowe_4.txt", "Unit"}));
  EXPECT_EQ(detailsOf("Emissivity front"), (QStringList{"Emissivity front", "0.84", "0.84", ""}));
  EXPECT_EQ(detailsOf("Emissivity back").value(2), "0.063");
  QTest::mouseClick(&find<QToolButton>("cmdOnlyDifferences"), Qt::LeftButton);
  EXPECT_TRUE(detailsOf("Emissivity front").isEmpty());
  const auto found = details().findItems("Emissivity back", Qt::MatchRecursive);
  ASSERT_EQ(found.size(), 1);
  EXPECT_NE(found.front()->background(2), found.front()->background(1));

  QDir().mkdir(file(folder / "more"));
  for (const char* name : {"grey_6.txt", "ripple_4.txt"}) {
    QFile::copy(QStringLiteral(ORV_SOURCE_DIR "/examples/panes/") + name,
                file(folder / "more/") + name);
  }
  window.openPaths({file(folder / "more")});
  selectRows(1, 1);
  ASSERT_TRUE(plots({"clear_4.txt (panes)", "ripple_4.txt"}));
  trigger("mnuViewPin");
  ASSERT_TRUE(QTest::qWaitFor([&] { return dock().plot().dataSets.back().isPinned; }));
  selectRows(0, 1);
  ASSERT_TRUE(plots({"clear_4.txt (panes)", "ripple_4.txt", "grey_6.txt"}));
  dialogs.press("Yes");
  trigger("mnuFileRemove");
  ASSERT_TRUE(plots({"clear_4.txt"})) << "the source of the others is closed";
  legend().setCurrentItem(legend().topLevelItem(0));
  QTest::keyClick(&legend(), Qt::Key_P);
  EXPECT_TRUE(plots({}));
  EXPECT_FALSE(isEnabled("mnuViewUnpin"));
}

TEST_F(SeveralTest, ManyPanesAreABandWithTheirMean) {
  openExamples("panes");
  trigger("mnuEditSelectAll");
  ASSERT_TRUE(QTest::qWaitFor([&] { return plotted().size() == 14; }));
  EXPECT_EQ(curves(), 6) << "three quantities, an area and a line each";
  EXPECT_THAT(label("lblSpectrumNote"),
              Begins("The band from the least to the greatest value of 14 records"));
  grid().setFocus();
  pressPin(1);
  ASSERT_TRUE(QTest::qWaitFor([&] { return curves() == 9; })) << "one stands out";
  EXPECT_EQ(plotted().front(), "clear_4.txt");
  selectRows(0, 11);
  ASSERT_TRUE(QTest::qWaitFor([&] { return curves() == 36; })) << "twelve are told apart";
  EXPECT_FALSE(label("lblSpectrumNote").contains("band"));
  EXPECT_EQ(details().rows(false).front().size(), 14);
}

TEST_F(SeveralTest, ShadingsAreCalledByTheirTypeAndPlotted) {
  openExamples("shadings");
  pressFile("screen_5.txt");
  ASSERT_TRUE(plots({"screen_5"}));
  const auto& set = dock().plot().dataSets.front();
  const double at350 = set.valueAt(app::SpectralQuantity::transmittance, 0.35).value_or(-1);
  EXPECT_NEAR(at350, 0.0520 + 0.0134, 1e-4) << "the beam and what is scattered";
  EXPECT_EQ(detailsOf("Type").value(1), "Screen (3)");

  copyRows(0, 2);
  window.openPaths({makeRows("blinds.mdb", 0)});
  selectNode({"blinds.mdb", "Shadings"});
  dialogs.type("Blinds");
  trigger("mnuEditPaste");
  ASSERT_EQ(rows(), 3);
  const int type = column("Type");
  QTest::keyClicks(&filter(type), "venet");
  ASSERT_EQ(rows(), 1);
  EXPECT_EQ(cell(0, type), "Venetian blind (1)");
}

}  // namespace orv::test
