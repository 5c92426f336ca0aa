#include "app/docks/spectra/SpectrumView.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "app/docks/spectra/Readout.h"

namespace orv::app {

namespace {

constexpr double kStep = 1.25;        ///< one notch of the wheel, one press of a key
constexpr double kLeastShare = 1e-3;  ///< of the full range: zooming in ends there
constexpr int kLeastDrag = 6;         ///< pixels: a shorter drag is a click
constexpr double kEmphasis = 2.2;     ///< times the width of the pen

/// Moves `range` into `bounds`, cut to their size.
QRectF keptInside(QRectF range, const QRectF& bounds) {
  range.setWidth(std::clamp(range.width(), bounds.width() * kLeastShare, bounds.width()));
  range.setHeight(std::clamp(range.height(), bounds.height() * kLeastShare, bounds.height()));
  range.moveLeft(std::clamp(range.left(), bounds.left(), bounds.right() - range.width()));
  range.moveTop(std::clamp(range.top(), bounds.top(), bounds.bottom() - range.height()));
  return range;
}

}  // namespace

SpectrumView::SpectrumView(SpectrumPlot& plot, QWidget* parent)
    : QChartView(parent),
      plot_(plot),
      chart_(new SpectrumChart(PlotTheme::of(palette()))),
      rubberBand_(new QRubberBand(QRubberBand::Rectangle, viewport())) {
  // The view comes with a chart, which nobody owns once another takes its place.
  const std::unique_ptr<QChart> replaced(chart());
  setChart(chart_);
  setRenderHint(QPainter::Antialiasing);
  setFrameShape(QFrame::NoFrame);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(tr("Spectrum plot"));
  setWhatsThis(tr(
      "<p>Transmittance and reflectance against wavelength. The cross hair shows the values "
      "under the pointer.</p><p>Drag a rectangle or turn the wheel to zoom, drag with the "
      "middle button or with Shift to move, double-click to see everything again. With the "
      "keyboard: <b>+</b>, <b>-</b>, <b>0</b> and the arrows; <b>T</b>, <b>F</b> and <b>B</b> show "
      "or hide curves.</p>"));
  connect(scene(), &QGraphicsScene::changed, this, [this] {
    pictureIsStale_ = true;
    viewport()->update();
  });
}

void SpectrumView::showCurves() {
  awaited_.reset();
  emphasized_.reset();
  chart_->showCurves(plot_);
}

void SpectrumView::showView() {
  chart_->showView(plot_);
  viewport()->update();
}

void SpectrumView::zoom(double factor) {
  zoomAt(plotArea().center(), factor, factor);
}

void SpectrumView::showAll() {
  setRange(plot_.fullRange());
}

void SpectrumView::setRange(QRectF range) {
  const QRectF full = plot_.fullRange();
  plot_.range = keptInside(range, full);
  plot_.zoomed = plot_.range.width() < full.width() * (1 - 1e-9) ||
                 plot_.range.height() < full.height() * (1 - 1e-9);
  showView();
  emit rangeChanged();
}

void SpectrumView::zoomAt(const QPointF& anchor, double factorX, double factorY) {
  const QPointF fixed = toPlot(anchor);
  QRectF range = plot_.range;
  range.setLeft(fixed.x() + (range.left() - fixed.x()) / factorX);
  range.setRight(fixed.x() + (plot_.range.right() - fixed.x()) / factorX);
  range.setTop(fixed.y() + (range.top() - fixed.y()) / factorY);
  range.setBottom(fixed.y() + (plot_.range.bottom() - fixed.y()) / factorY);
  setRange(range);
}

std::optional<double> SpectrumView::pointedWavelength() const {
  if (!pointer_) return {};
  return plot_.scale.wavelength(toPlot(*pointer_).x());
}

void SpectrumView::pointAt(const QPointF& position) {
  pointer_.reset();
  if (plotArea().contains(position)) pointer_ = position;
  viewport()->update();
}

void SpectrumView::pointAtWavelength(double microns, std::optional<std::size_t> dataSet) {
  QPointF point(plot_.scale.position(microns), plot_.range.center().y());
  for (const SpectralQuantity quantity : kSpectralQuantities) {
    if (!dataSet || !plot_.shows(quantity)) continue;
    if (const auto value = plot_.dataSets[*dataSet].valueAt(quantity, microns)) {
      point.setY(*value);
      break;
    }
  }
  if (!plot_.range.contains(point)) showAll();
  awaited_ = point;
  viewport()->update();
}

void SpectrumView::emphasize(std::optional<std::size_t> dataSet) {
  emphasized_ = dataSet;
  viewport()->update();
}

QRectF SpectrumView::plotArea() const {
  return chart_->mapRectToScene(chart_->plotArea());
}

QPointF SpectrumView::toPlot(const QPointF& position) const {
  const QRectF area = plotArea();
  const QRectF& range = plot_.range;
  return {range.left() + (position.x() - area.left()) / area.width() * range.width(),
          range.top() + (area.bottom() - position.y()) / area.height() * range.height()};
}

QPointF SpectrumView::toWidget(const QPointF& point) const {
  const QRectF area = plotArea();
  const QRectF& range = plot_.range;
  return {area.left() + (point.x() - range.left()) / range.width() * area.width(),
          area.bottom() - (point.y() - range.top()) / range.height() * area.height()};
}

// --- Painting ------------------------------------------------------------------------------------

void SpectrumView::renderChart() {
  picture_ = QPixmap(viewport()->size() * devicePixelRatioF());
  picture_.setDevicePixelRatio(devicePixelRatioF());
  picture_.fill(palette().color(QPalette::Base));
  QPainter painter(&picture_);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRect whole = viewport()->rect();
  render(&painter, whole, whole);
  pictureIsStale_ = false;
}

void SpectrumView::paintEvent(QPaintEvent* /*event*/) {
  if (pictureIsStale_ || picture_.size() != viewport()->size() * devicePixelRatioF()) renderChart();
  if (const auto point = std::exchange(awaited_, std::nullopt)) pointAt(toWidget(*point));
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.drawPixmap(0, 0, picture_);
  if (emphasized_ && *emphasized_ < plot_.dataSets.size()) drawCurve(painter, *emphasized_);
  if (pointer_ && drag_ == Drag::none) drawCrossHair(painter);
}

void SpectrumView::drawCurve(QPainter& painter, std::size_t dataSet) const {
  if (!plot_.showsDataSet(dataSet)) return;
  const SpectrumDataSet& set = plot_.dataSets[dataSet];
  const PlotTheme theme = PlotTheme::of(palette());
  painter.save();
  painter.setClipRect(plotArea());
  for (const SpectralQuantity quantity : kSpectralQuantities) {
    if (!plot_.shows(quantity)) continue;
    QPolygonF line;
    for (std::size_t i = 0; i < set.wavelengths.size(); ++i) {
      line << toWidget({plot_.scale.position(set.wavelengths[i]), set.of(quantity)[i]});
    }
    const QPen thin = theme.pen(set, plot_.paneCount(), quantity);
    QPen pen = thin;
    pen.setWidthF(thin.widthF() * kEmphasis);
    if (thin.style() == Qt::CustomDashLine) {
      // Dashes are measured in widths of the pen; these are to cover those of the chart.
      auto dashes = thin.dashPattern();
      for (qreal& dash : dashes) dash /= kEmphasis;
      pen.setDashPattern(dashes);
    }
    painter.setPen(pen);
    painter.drawPolyline(line);
  }
  painter.restore();
}

std::optional<std::size_t> SpectrumView::nearestDataSet(const QPointF& position) const {
  const double microns = plot_.scale.wavelength(toPlot(position).x());
  std::optional<std::size_t> nearest;
  double least = std::numeric_limits<double>::max();
  for (std::size_t i = 0; i < plot_.dataSets.size(); ++i) {
    if (!plot_.showsDataSet(i)) continue;
    for (const SpectralQuantity quantity : kSpectralQuantities) {
      if (!plot_.shows(quantity)) continue;
      const auto value = plot_.dataSets[i].valueAt(quantity, microns);
      if (!value) continue;
      const double distance = std::abs(toWidget({0, *value}).y() - position.y());
      if (distance < least) {
        least = distance;
        nearest = i;
      }
    }
  }
  return nearest;
}

void SpectrumView::drawCrossHair(QPainter& painter) const {
  const auto nearest = nearestDataSet(*pointer_);
  const PlotTheme theme = PlotTheme::of(palette());
  const QRectF area = plotArea();
  if (nearest && plot_.dataSets.size() > 1) drawCurve(painter, *nearest);
  painter.setPen(QPen(theme.frame, 1, Qt::SolidLine));
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.drawLine(QPointF(pointer_->x(), area.top()), QPointF(pointer_->x(), area.bottom()));
  painter.drawLine(QPointF(area.left(), pointer_->y()), QPointF(area.right(), pointer_->y()));
  painter.setRenderHint(QPainter::Antialiasing);
  const double microns = *pointedWavelength();
  if (nearest) {
    const SpectrumDataSet& set = plot_.dataSets[*nearest];
    for (const SpectralQuantity quantity : kSpectralQuantities) {
      const auto value = set.valueAt(quantity, microns);
      if (!value || !plot_.shows(quantity)) continue;
      painter.setBrush(theme.colour(set, plot_.paneCount()));
      painter.setPen(QPen(theme.background, 1));
      painter.drawEllipse(toWidget({plot_.scale.position(microns), *value}), 4, 4);
    }
  }
  Readout(plot_, theme, font()).draw(painter, area, *pointer_, microns, nearest);
}

// --- Events --------------------------------------------------------------------------------------

void SpectrumView::resizeEvent(QResizeEvent* event) {
  QChartView::resizeEvent(event);
  pointer_.reset();
  pictureIsStale_ = true;
}

void SpectrumView::changeEvent(QEvent* event) {
  QChartView::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    chart_->setFont(font());
    chart_->setPlotTheme(PlotTheme::of(palette()), plot_);
  }
}

void SpectrumView::mousePressEvent(QMouseEvent* event) {
  const QPointF position = event->position();
  const bool left = event->button() == Qt::LeftButton;
  if (!plotArea().contains(position) || !(left || event->button() == Qt::MiddleButton)) {
    event->ignore();
    return;
  }
  drag_ = left && !(event->modifiers() & Qt::ShiftModifier) ? Drag::zoom : Drag::move;
  dragStart_ = position;
  dragRange_ = plot_.range;
  if (drag_ == Drag::move) setCursor(Qt::ClosedHandCursor);
  viewport()->update();
}

void SpectrumView::mouseMoveEvent(QMouseEvent* event) {
  const QPointF position = event->position();
  pointAt(position);
  if (drag_ == Drag::zoom) {
    const QRectF band = QRectF(dragStart_, position).normalized() & plotArea();
    rubberBand_->setGeometry(band.toAlignedRect());
    rubberBand_->setVisible((position - dragStart_).manhattanLength() >= kLeastDrag);
  } else if (drag_ == Drag::move) {
    const QPointF moved = toPlot(position) - toPlot(dragStart_);
    setRange(dragRange_.translated(-moved));
  }
}

void SpectrumView::mouseReleaseEvent(QMouseEvent* /*event*/) {
  if (drag_ == Drag::zoom && rubberBand_->isVisible()) {
    const QRectF band = rubberBand_->geometry();
    if (band.width() >= kLeastDrag && band.height() >= kLeastDrag) {
      setRange(QRectF(toPlot(band.bottomLeft()), toPlot(band.topRight())));
    }
  }
  rubberBand_->hide();
  drag_ = Drag::none;
  unsetCursor();
  viewport()->update();
}

void SpectrumView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) showAll();
}

void SpectrumView::wheelEvent(QWheelEvent* event) {
  // Alt turns the wheel sideways on some platforms; both directions count.
  const QPoint delta = event->angleDelta();
  const double notches = (delta.y() != 0 ? delta.y() : delta.x()) / 120.0;
  if (notches == 0 || !plotArea().contains(event->position())) {
    event->ignore();
    return;
  }
  const double factor = std::pow(kStep, notches);
  const bool onlyX = event->modifiers() & Qt::ControlModifier;
  const bool onlyY = event->modifiers() & Qt::ShiftModifier;
  zoomAt(event->position(), onlyY ? 1 : factor, onlyX ? 1 : factor);
  event->accept();
}

void SpectrumView::keyPressEvent(QKeyEvent* event) {
  const QPointF position = pointer_.value_or(plotArea().center());
  switch (event->key()) {
    case Qt::Key_Plus:
      return zoom(kStep);
    case Qt::Key_Minus:
      return zoom(1 / kStep);
    case Qt::Key_0:
    case Qt::Key_Home:
      return showAll();
    case Qt::Key_Left:
      return pointAt(position - QPointF(1, 0));
    case Qt::Key_Right:
      return pointAt(position + QPointF(1, 0));
    case Qt::Key_Up:
      return pointAt(position - QPointF(0, 4));
    case Qt::Key_Down:
      return pointAt(position + QPointF(0, 4));
    default:
      event->ignore();
  }
}

void SpectrumView::leaveEvent(QEvent* event) {
  QChartView::leaveEvent(event);
  pointer_.reset();
  viewport()->update();
}

}  // namespace orv::app

#include "moc_SpectrumView.cpp"
