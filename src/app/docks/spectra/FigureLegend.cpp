#include "app/docks/spectra/FigureLegend.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <algorithm>
#include <set>

#include "app/Text.h"

namespace orv::app {

namespace {

constexpr double kMargin = 12;
constexpr double kLine = 30;  ///< length of the sample lines
constexpr double kAreaSample = 10;
constexpr double kGap = 8;
constexpr double kColumnGap = 22;

QFontMetricsF metrics() {
  return QFontMetricsF(QGuiApplication::font());
}

double rowHeight() {
  return metrics().lineSpacing() * 1.2;
}

}  // namespace

FigureLegend::FigureLegend(const SpectrumPlot& plot, const PlotTheme& theme, double width)
    : textColour_(theme.text) {
  for (const SpectralQuantity quantity : kSpectralQuantities) {
    if (plot.shows(quantity)) quantities_.push_back({theme.sample(quantity), nameOf(quantity)});
  }
  addExtras(plot, theme);
  for (std::size_t i = 0; i < plot.dataSets.size(); ++i) {
    const SpectrumDataSet& set = plot.dataSets[i];
    if (!plot.showsDataSet(i) || !set.hasSpectrum() || set.isInBand) continue;
    const QPen pen = theme.pen(set, plot.paneCount(), SpectralQuantity::transmittance);
    dataSets_.push_back({pen, shownText(set.label)});
  }
  for (const auto* entries : {&quantities_, &dataSets_}) {
    for (const Entry& entry : *entries) {
      columnWidth_ = std::max(columnWidth_,
                              kLine + kGap + kColumnGap + metrics().horizontalAdvance(entry.text));
    }
  }
  if (columnWidth_ > 0) {
    columns_ = std::max(1, static_cast<int>((width - 2 * kMargin) / columnWidth_));
  }
}

/// One entry a kind; the quantities have theirs.
void FigureLegend::addExtras(const SpectrumPlot& plot, const PlotTheme& theme) {
  std::set<ExtraCurve::Kind> told;
  for (ExtraCurve curve : extraCurves(plot)) {
    if (!told.insert(curve.kind).second) continue;
    curve.quantity = SpectralQuantity::transmittance;
    const QPen pen = curve.isArea() ? QPen(theme.brush(curve.kind), kAreaSample) : theme.pen(curve);
    quantities_.push_back({pen, nameOf(curve.kind)});
  }
}

int FigureLegend::rows() const {
  const auto rowsOf = [&](std::size_t count) {
    return static_cast<int>(count + static_cast<std::size_t>(columns_) - 1) / columns_;
  };
  return rowsOf(quantities_.size()) + rowsOf(dataSets_.size());
}

double FigureLegend::height() const {
  return rows() * rowHeight() + kMargin;
}

void FigureLegend::draw(QPainter& painter, const QPointF& topLeft) const {
  painter.setFont(QGuiApplication::font());
  QPointF place = topLeft + QPointF(kMargin, 0);
  for (const auto* entries : {&quantities_, &dataSets_}) {
    for (std::size_t i = 0; i < entries->size(); ++i) {
      const int column = static_cast<int>(i) % columns_;
      if (i > 0 && column == 0) place.ry() += rowHeight();
      drawEntry(painter, place + QPointF(column * columnWidth_, 0), (*entries)[i]);
    }
    if (!entries->empty()) place.ry() += rowHeight();
  }
}

void FigureLegend::drawEntry(QPainter& painter, const QPointF& topLeft, const Entry& entry) const {
  const double middle = topLeft.y() + rowHeight() / 2;
  painter.setPen(entry.pen);
  painter.drawLine(QPointF(topLeft.x(), middle), QPointF(topLeft.x() + kLine, middle));
  painter.setPen(textColour_);
  const QRectF area(topLeft.x() + kLine + kGap, topLeft.y(), columnWidth_, rowHeight());
  painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, entry.text);
}

}  // namespace orv::app
