#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "app/docks/Panes.h"
#include "app/docks/spectra/PlotTheme.h"
#include "app/docks/spectra/Readout.h"
#include "app/docks/spectra/SpectrumPlot.h"

namespace orv::app {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;

constexpr auto kT = SpectralQuantity::transmittance;
constexpr auto kRf = SpectralQuantity::frontReflectance;
constexpr auto kRb = SpectralQuantity::backReflectance;

TEST(SpectrumPlotTest, TakesSpectraInAscendingMicronsWhateverTheRecordHolds) {
  const auto sets = dataSetsOf({makePane(
      "a", 0, {{2500, 0.7F, 0.1F, 0.2F}, {0, 0.5F, 0.5F, 0.5F}, {500, 0.9F, 0.08F, 0.09F}})});
  ASSERT_EQ(sets.size(), 1U);
  EXPECT_THAT(sets[0].wavelengths, ElementsAre(DoubleNear(0.5, 1e-6), DoubleNear(2.5, 1e-6)));
  EXPECT_THAT(sets[0].of(kT), ElementsAre(DoubleNear(0.9, 1e-6), DoubleNear(0.7, 1e-6)));
  EXPECT_THAT(sets[0].of(kRf), ElementsAre(DoubleNear(0.08, 1e-6), DoubleNear(0.1, 1e-6)));
  EXPECT_THAT(sets[0].of(kRb), ElementsAre(DoubleNear(0.09, 1e-6), DoubleNear(0.2, 1e-6)));
}

TEST(SpectrumPlotTest, NamesPanesAndBindsTheirAnglesTogether) {
  const auto sets = dataSetsOf({makePane("a", 0, {}), makePane("b", 0, {}), makePane("a", 60, {}),
                                makePane("c", 45, {}), makePane("a", 60, {})});
  std::vector<int> panes;
  std::vector<int> angleIndexes;
  QStringList labels;
  for (const auto& set : sets) {
    panes.push_back(set.pane);
    angleIndexes.push_back(set.angleIndex);
    labels << set.label;
  }
  // The last repeats an angle: the same pane of another source.
  EXPECT_THAT(panes, ElementsAre(0, 1, 0, 2, 3));
  EXPECT_THAT(angleIndexes, ElementsAre(0, 0, 1, 0, 0));
  EXPECT_EQ(labels, (QStringList{"a, 0°", "b", "a, 60°", "c, 45°", "a, 60°"}));

  // Without a file they are called by their product or number.
  auto product = makePane("", 0, {});
  product->productname("Clear");
  auto number = makePane("", 0, {});
  number->id(7);
  const auto others = dataSetsOf({product, number, std::shared_ptr<GlazingData>()});
  ASSERT_EQ(others.size(), 2U);
  EXPECT_EQ(others[0].name, "Clear");
  EXPECT_EQ(others[1].name, "Pane 7");
}

TEST(SpectrumPlotTest, FindsValuesBetweenPointsOnly) {
  const auto sets = dataSetsOf({makePane("a", 0, {{500, 0.8F, 0, 0}, {600, 0.6F, 0, 0}})});
  EXPECT_NEAR(sets[0].valueAt(kT, 0.55).value(), 0.7, 1e-6);
  EXPECT_NEAR(sets[0].valueAt(kT, sets[0].wavelengths[0]).value(), 0.8, 1e-6);
  EXPECT_NEAR(sets[0].valueAt(kT, sets[0].wavelengths[1]).value(), 0.6, 1e-6);
  EXPECT_FALSE(sets[0].valueAt(kT, 0.49) || sets[0].valueAt(kT, 0.61));
  EXPECT_FALSE(dataSetsOf({makePane("none", 0, {})})[0].valueAt(kT, 0.55));
}

TEST(SpectrumPlotTest, RangesOverWhatIsShown) {
  SpectrumPlot plot;
  EXPECT_EQ(plot.fullRange(), QRectF(QPointF(0.3, 0), QPointF(2.5, 1)));
  plot.setRecords({makePane("a", 0, {{300, 0.8F, 0, 0}, {2500, 0.6F, 0, 0}}),
                   makePane("b", 60, {{400, 0.8F, 1.25F, 0}, {25000, 0.6F, 0, 0}})});
  EXPECT_NEAR(plot.range.right(), 25, 1e-5);
  EXPECT_NEAR(plot.range.bottom(), 1.25, 1e-6);
  plot.quantities[1] = false;
  EXPECT_NEAR(plot.fullRange().bottom(), 1, 1e-6);
  plot.hidden[1] = true;
  EXPECT_NEAR(plot.fullRange().right(), 2.5, 1e-6);
  plot.hidden[1] = false;
  plot.angle = 60;
  EXPECT_NEAR(plot.fullRange().left(), 0.4, 1e-6);
  plot.scale.logarithmic = true;
  EXPECT_NEAR(plot.fullRange().right(), 1.39794, 1e-5);
}

TEST(SpectrumPlotTest, KeepsAChosenRangeAndAngleFromRecordToRecord) {
  const auto visible = makePane("a", 0, {{300, 0.8F, 0, 0}, {2500, 0.6F, 0, 0}});
  SpectrumPlot plot;
  plot.setRecords({visible});
  plot.range = QRectF(0.4, 0.5, 0.3, 0.2);
  plot.zoomed = true;
  plot.setRecords({});
  plot.setRecords({visible});
  EXPECT_EQ(plot.range, QRectF(0.4, 0.5, 0.3, 0.2));
  plot.setRecords({makePane("b", 0, {{5000, 0, 0, 0}, {25000, 0, 0, 0}})});
  EXPECT_FALSE(plot.zoomed);
  EXPECT_EQ(plot.range, plot.fullRange());

  plot.angle = 60;
  plot.setRecords({makePane("a", 0, {}), makePane("a", 60, {})});
  EXPECT_EQ(plot.angle, 60);
  plot.setRecords({makePane("a", 0, {})});
  EXPECT_FALSE(plot.angle);
}

double linear(int value) {
  const double part = value / 255.0;
  return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& c) {
  return 0.2126 * linear(c.red()) + 0.7152 * linear(c.green()) + 0.0722 * linear(c.blue());
}

/// How different two colours look, by CIE 1976.
double distance(const QColor& a, const QColor& b) {
  const auto lab = [](const QColor& c) {
    const double r = linear(c.red());
    const double g = linear(c.green());
    const double blue = linear(c.blue());
    const double x = std::cbrt((0.4124 * r + 0.3576 * g + 0.1805 * blue) / 0.9505);
    const double y = std::cbrt(luminance(c));
    const double z = std::cbrt((0.0193 * r + 0.1192 * g + 0.9505 * blue) / 1.089);
    return std::array{116 * y, 500 * (x - y), 200 * (y - z)};
  };
  const auto p = lab(a);
  const auto q = lab(b);
  return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
}

TEST(SpectrumPlotTest, TellsTwelvePanesApartOnBothBackgrounds) {
  QPalette dark;
  dark.setColor(QPalette::Active, QPalette::Base, QColor(0x1e, 0x20, 0x23));
  dark.setColor(QPalette::Active, QPalette::Text, Qt::white);
  for (const PlotTheme& theme : {PlotTheme::paper(), PlotTheme::of(dark)}) {
    std::vector<QColor> colours;
    for (int pane = 0; pane < 12; ++pane) {
      SpectrumDataSet set;
      set.pane = pane;
      const QColor colour = theme.colour(set, 12);
      const auto [low, high] = std::minmax(luminance(colour), luminance(theme.background));
      EXPECT_GE((high + 0.05) / (low + 0.05), 3) << pane;
      for (const QColor& other : colours) EXPECT_GT(distance(colour, other), 20) << pane;
      colours.push_back(colour);
    }
  }
}

TEST(SpectrumPlotTest, ReadsOutAllCurvesWhileTheyAreFew) {
  SpectrumPlot plot;
  const auto pane = makePane("a", 0, {{500, 0.8F, 0.1F, 0.2F}, {600, 0.6F, 0.1F, 0.2F}});
  const auto elsewhere = makePane("b", 0, {{5000, 0, 0, 0}, {6000, 0, 0, 0}});
  plot.setRecords({pane, elsewhere});
  plot.quantities[1] = false;
  const PlotTheme theme = PlotTheme::paper();
  const Readout readout(plot, theme, QFont());
  EXPECT_THAT(readout.lines(0.55, 0),
              ElementsAre(QStringList{"550.0 nm", "T", "Rb"}, QStringList{"a", "0.700", "0.200"},
                          QStringList{"b", "–", "–"}));
  plot.setRecords({pane, pane, pane, pane, pane, pane, elsewhere});
  EXPECT_EQ(readout.lines(0.55, 3).size(), 2U);
  EXPECT_EQ(readout.lines(0.55, {}).size(), 1U);
}

}  // namespace
}  // namespace orv::app
