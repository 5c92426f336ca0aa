#include "app/docks/spectra/SpectrumChart.h"

#include <QAreaSeries>
#include <QFontMetricsF>
#include <QGraphicsLayout>
#include <QGraphicsSceneResizeEvent>
#include <QLegend>
#include <algorithm>
#include <cmath>

namespace orv::app {

namespace {

constexpr double kTickSpacing = 1.8;  ///< from label to label, in widths of the longest
constexpr int kMostTicks = 14;

QLineSeries* lineOf(const std::vector<QPointF>& line, const WavelengthScale& scale) {
  QList<QPointF> points;
  points.reserve(static_cast<qsizetype>(line.size()));
  for (const QPointF& point : line) points.append({scale.position(point.x()), point.y()});
  auto* series = new QLineSeries;
  series->replace(points);
  return series;
}

}  // namespace

SpectrumChart::SpectrumChart(PlotTheme theme)
    : theme_(std::move(theme)), wavelengths_(new QCategoryAxis), fractions_(new QValueAxis) {
  legend()->hide();
  // A label at the right end of the axis reaches beyond it.
  const int half = QFontMetrics(font()).horizontalAdvance(QStringLiteral("25000")) / 2;
  setMargins(QMargins(4, 4, half + 2, 4));
  layout()->setContentsMargins(0, 0, 0, 0);
  setBackgroundRoundness(0);
  setAnimationOptions(QChart::NoAnimation);

  wavelengths_->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
  wavelengths_->setTruncateLabels(false);
  fractions_->setTickType(QValueAxis::TicksDynamic);
  fractions_->setTickAnchor(0);
  fractions_->setTitleText(tr("Transmittance, reflectance"));
  addAxis(wavelengths_, Qt::AlignBottom);
  addAxis(fractions_, Qt::AlignLeft);
  applyColours();
}

void SpectrumChart::showCurves(const SpectrumPlot& plot) {
  removeAllSeries();
  curves_.clear();
  extras_ = extraCurves(plot);
  choice_ = ExtraChoice(plot);
  addExtras(true, plot.scale);
  for (const SpectrumDataSet& set : plot.dataSets) addCurves(set, plot.scale);
  addExtras(false, plot.scale);
  applyPens(plot);
  showView(plot);
}

/// Later ones lie over earlier ones: areas are added before the curves, lines after them.
void SpectrumChart::addExtras(bool areas, const WavelengthScale& scale) {
  for (const ExtraCurve& extra : extras_) {
    if (extra.isArea() != areas) continue;
    auto* line = lineOf(extra.line, scale);
    if (areas) {
      auto* below = lineOf(extra.below, scale);
      auto* area = new QAreaSeries(line, below);
      line->setParent(area);
      below->setParent(area);
      area->setPen(Qt::NoPen);
      area->setBrush(theme_.brush(extra.kind));
      attach(area);
    } else {
      line->setPen(theme_.pen(extra));
      attach(line);
    }
  }
}

void SpectrumChart::attach(QAbstractSeries* series) {
  addSeries(series);
  series->attachAxis(wavelengths_);
  series->attachAxis(fractions_);
}

void SpectrumChart::addCurves(const SpectrumDataSet& set, const WavelengthScale& scale) {
  curves_.emplace_back();
  if (set.isInBand) return;
  for (const SpectralQuantity quantity : kSpectralQuantities) {
    const auto& values = set.of(quantity);
    QList<QPointF> points;
    points.reserve(static_cast<qsizetype>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) {
      points.append({scale.position(set.wavelengths[i]), values[i]});
    }
    auto* series = new QLineSeries;
    series->replace(points);
    attach(series);
    curves_.back()[static_cast<std::size_t>(quantity)] = series;
  }
}

void SpectrumChart::showView(const SpectrumPlot& plot) {
  if (choice_ != ExtraChoice(plot)) {
    if (extras_ != extraCurves(plot)) return showCurves(plot);
    choice_ = ExtraChoice(plot);
  }
  for (std::size_t i = 0; i < curves_.size(); ++i) {
    if (plot.dataSets[i].isInBand) continue;
    for (const SpectralQuantity quantity : kSpectralQuantities) {
      const bool visible = plot.showsDataSet(i) && plot.shows(quantity);
      curves_[i][static_cast<std::size_t>(quantity)]->setVisible(visible);
    }
  }
  scale_ = plot.scale;
  range_ = plot.range;
  wavelengths_->setTitleText(tr("Wavelength (%1)").arg(scale_.unitText()));
  updateTicks();
}

void SpectrumChart::setPlotTheme(const PlotTheme& theme, const SpectrumPlot& plot) {
  theme_ = theme;
  applyColours();
  showCurves(plot);
}

void SpectrumChart::applyPens(const SpectrumPlot& plot) {
  const int panes = plot.paneCount();
  for (std::size_t i = 0; i < curves_.size(); ++i) {
    if (plot.dataSets[i].isInBand) continue;
    for (const SpectralQuantity quantity : kSpectralQuantities) {
      curves_[i][static_cast<std::size_t>(quantity)]->setPen(
          theme_.pen(plot.dataSets[i], panes, quantity));
    }
  }
}

void SpectrumChart::applyColours() {
  setBackgroundBrush(theme_.background);
  setBackgroundPen(Qt::NoPen);
  for (QAbstractAxis* axis :
       {static_cast<QAbstractAxis*>(wavelengths_), static_cast<QAbstractAxis*>(fractions_)}) {
    axis->setLabelsBrush(theme_.text);
    axis->setTitleBrush(theme_.text);
    axis->setLinePen(QPen(theme_.frame, 1));
    axis->setGridLinePen(QPen(theme_.grid, 1));
    axis->setLabelsFont(font());
    axis->setTitleFont(font());
  }
}

void SpectrumChart::resizeEvent(QGraphicsSceneResizeEvent* event) {
  QChart::resizeEvent(event);
  updateTicks();
}

void SpectrumChart::updateTicks() {
  if (range_.isEmpty()) return;
  const QFontMetricsF metrics(font());
  const double across = kTickSpacing * metrics.horizontalAdvance(QStringLiteral("25000"));
  const int columns = std::clamp(static_cast<int>(size().width() / across), 2, kMostTicks);
  const int rows = std::clamp(static_cast<int>(size().height() / (3 * metrics.height())), 2, 10);

  for (const QString& label : wavelengths_->categoriesLabels()) wavelengths_->remove(label);
  const double left = range_.left();
  const double right = range_.right();
  wavelengths_->setRange(left, right);
  for (const AxisTick& tick :
       scale_.ticks(scale_.wavelength(left), scale_.wavelength(right), columns)) {
    wavelengths_->append(tick.label, tick.position);
  }

  const double step = roundStep(range_.height(), rows);
  fractions_->setRange(range_.top(), range_.bottom());
  fractions_->setTickInterval(step);
  const int decimals = std::max(0, -static_cast<int>(std::floor(std::log10(step) + 1e-9)));
  fractions_->setLabelFormat(QStringLiteral("%.%1f").arg(decimals));
}

}  // namespace orv::app

#include "moc_SpectrumChart.cpp"
