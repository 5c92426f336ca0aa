#include "app/docks/details/SlatDrawing.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace orv::app {

namespace {

constexpr int kSlats = 3;
constexpr double kSlatMargin = 8;
constexpr double kPane = 4;  ///< thickness of the pane's line
constexpr double kArrow = 4;

double radians(double degrees) {
  return degrees * std::numbers::pi / 180;
}

QString lengthText(double millimetres) {
  return QString::number(millimetres, 'g', 4) + QStringLiteral(" mm");
}

/// A slat across the origin, crowned upwards, then turned with the edge at the pane down.
QPainterPath slat(const ShadingDataClass& shading, double scale) {
  const double half = shading.slat_length() / 2 * scale;
  QPainterPath path;
  path.moveTo(-half, 0);
  // A parabola through the crown: its control point lies twice as high.
  path.quadTo(0, -2 * shading.slat_curvature() * scale, half, 0);
  return QTransform().rotate(-shading.angle()).map(path);
}

void drawArrow(QPainter& painter, const QPointF& tip, double direction) {
  painter.drawLine(tip, tip + QPointF(-kArrow / 2, direction * kArrow));
  painter.drawLine(tip, tip + QPointF(kArrow / 2, direction * kArrow));
}

}  // namespace

SlatDrawing::SlatDrawing(QWidget* parent) : QWidget(parent) {
  setAccessibleName(tr("Geometry of the slats"));
  setWhatsThis(tr(
      "Three slats beside the pane, to scale: their width, crown, angle and distance. A vertical "
      "blind is seen from above."));
}

void SlatDrawing::showShading(std::shared_ptr<const ShadingDataClass> shading) {
  shading_ = std::move(shading);
  const QString text = shading_ && canDraw(*shading_) ? caption() : QString();
  setAccessibleDescription(text);
  setToolTip(text);
  update();
}

bool SlatDrawing::canDraw(const ShadingDataClass& shading) {
  return shading.slat_length() > 0 && shading.slat_distance() > 0 &&
         std::isfinite(shading.slat_length()) && std::isfinite(shading.slat_distance()) &&
         std::isfinite(shading.angle()) && std::isfinite(shading.slat_curvature());
}

QString SlatDrawing::caption() const {
  QString text =
      tr("Slats %1 wide, %2 apart, at %3°")
          .arg(lengthText(shading_->slat_length()), lengthText(shading_->slat_distance()),
               QString::number(shading_->angle(), 'g', 4));
  if (shading_->slat_curvature() > 0) {
    text += tr(", crown %1").arg(lengthText(shading_->slat_curvature()));
  }
  if (shading_->window_slat_distance() > 0) {
    text += tr(", %1 from the pane").arg(lengthText(shading_->window_slat_distance()));
  }
  if (shading_->vertical()) text += tr("; vertical blind, seen from above");
  return text;
}

void SlatDrawing::paintEvent(QPaintEvent* /*event*/) {
  if (!shading_ || !canDraw(*shading_)) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QRectF area = QRectF(rect()).adjusted(kSlatMargin, kSlatMargin, -kSlatMargin, -kSlatMargin);
  const QRectF textArea =
      painter.boundingRect(area, Qt::AlignHCenter | Qt::AlignBottom | Qt::TextWordWrap, caption());
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(textArea, Qt::AlignHCenter | Qt::TextWordWrap, caption());
  area.setBottom(textArea.top() - kSlatMargin);
  if (area.height() > 30) drawSlats(painter, area);
}

void SlatDrawing::drawSlats(QPainter& painter, const QRectF& area) const {
  const ShadingDataClass& shading = *shading_;
  const double turn = radians(shading.angle());
  const double across = shading.slat_length() * std::abs(std::cos(turn));
  const double rise = shading.slat_length() * std::abs(std::sin(turn)) + shading.slat_curvature();
  const double gap = std::max(shading.window_slat_distance(), shading.slat_length() / 4);
  const double pitchRoom =
      fontMetrics().horizontalAdvance(lengthText(shading.slat_distance())) + 24;
  const double width = area.width() - pitchRoom - kPane;
  const double height = area.height() - 4;
  if (width <= 0) return;
  const double scale =
      std::min(width / (across + gap), height / ((kSlats - 1) * shading.slat_distance() + rise));
  const double pitch = shading.slat_distance() * scale;

  const double drawn = kPane + (across + gap) * scale + pitchRoom;
  const double left = area.left() + (area.width() - drawn) / 2;
  const QPointF middle(left + kPane + (gap + across / 2) * scale, area.center().y());
  painter.fillRect(QRectF(left, area.top(), kPane, area.height()), QColor(0x6c, 0xb8, 0xf0));
  painter.setPen(QPen(palette().color(QPalette::WindowText), 1.8, Qt::SolidLine, Qt::RoundCap));
  painter.setBrush(Qt::NoBrush);
  const QPainterPath path = slat(shading, scale);
  for (int i = 0; i < kSlats; ++i) {
    const double y = middle.y() + (i - (kSlats - 1) / 2.0) * pitch;
    painter.drawPath(path.translated(middle.x(), y));
  }
  // From the inner edge of a slat to that of the next.
  const double edge = middle.y() - shading.slat_length() / 2 * std::sin(turn) * scale;
  drawPitch(painter, middle.x() + across / 2 * scale + 12, edge, edge + pitch);
}

void SlatDrawing::drawPitch(QPainter& painter, double x, double upper, double lower) const {
  painter.setPen(QPen(palette().color(QPalette::PlaceholderText), 1));
  painter.drawLine(QPointF(x, upper), QPointF(x, lower));
  drawArrow(painter, {x, upper}, 1);
  drawArrow(painter, {x, lower}, -1);
  const QRectF place(x + 6, upper, 200, lower - upper);
  painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                   lengthText(shading_->slat_distance()));
}

}  // namespace orv::app

#include "moc_SlatDrawing.cpp"
