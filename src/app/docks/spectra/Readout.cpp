#include "app/docks/spectra/Readout.h"

#include <QFontMetricsF>
#include <algorithm>

#include "app/Text.h"

namespace orv::app {

namespace {

constexpr std::size_t kFew = 6;
constexpr double kPadding = 6;
constexpr double kReadoutGap = 10;
constexpr double kReadoutSwatch = 10;
constexpr double kOffset = 14;  ///< from the pointer
constexpr int kLongestName = 28;

/// Beside the pointer on the side with room.
QRectF placed(const QSizeF& size, const QRectF& area, const QPointF& pointer) {
  QPointF corner = pointer + QPointF(kOffset, kOffset);
  if (corner.x() + size.width() > area.right()) corner.setX(pointer.x() - kOffset - size.width());
  if (corner.y() + size.height() > area.bottom()) {
    corner.setY(pointer.y() - kOffset - size.height());
  }
  corner.setX(std::max(corner.x(), area.left()));
  corner.setY(std::max(corner.y(), area.top()));
  return {corner, size};
}

}  // namespace

std::vector<std::size_t> Readout::listed(std::optional<std::size_t> nearest) const {
  std::vector<std::size_t> shown;
  for (std::size_t i = 0; i < plot_.dataSets.size(); ++i) {
    if (plot_.showsDataSet(i) && plot_.dataSets[i].hasSpectrum()) shown.push_back(i);
  }
  if (shown.size() <= kFew) return shown;
  return nearest ? std::vector<std::size_t>{*nearest} : std::vector<std::size_t>{};
}

std::vector<QStringList> Readout::lines(double microns, std::optional<std::size_t> nearest) const {
  std::vector<QStringList> lines;
  QStringList head{plot_.scale.text(microns) + u' ' + plot_.scale.unitText()};
  for (const SpectralQuantity quantity : kSpectralQuantities) {
    if (plot_.shows(quantity)) head << symbolOf(quantity);
  }
  lines.push_back(head);
  for (const std::size_t i : listed(nearest)) {
    const SpectrumDataSet& set = plot_.dataSets[i];
    QStringList line{shownText(set.label)};
    for (const SpectralQuantity quantity : kSpectralQuantities) {
      if (!plot_.shows(quantity)) continue;
      const auto value = set.valueAt(quantity, microns);
      line << (value ? QString::number(*value, 'f', 3) : QStringLiteral("–"));
    }
    lines.push_back(line);
  }
  return lines;
}

void Readout::draw(QPainter& painter, const QRectF& area, const QPointF& pointer, double microns,
                   std::optional<std::size_t> nearest) const {
  auto rows = lines(microns, nearest);
  const auto sets = listed(nearest);
  const QFontMetricsF metrics(font_);
  std::vector<double> widths(static_cast<std::size_t>(rows.front().size()), 0);
  for (auto& row : rows) {
    row[0] = metrics.elidedText(row[0], Qt::ElideMiddle, kLongestName * metrics.averageCharWidth());
    for (std::size_t column = 0; column < widths.size(); ++column) {
      widths[column] =
          std::max(widths[column], metrics.horizontalAdvance(row[static_cast<qsizetype>(column)]));
    }
  }
  double width = 2 * kPadding + kReadoutSwatch + kPadding;
  for (const double column : widths) width += column;
  width += kReadoutGap * static_cast<double>(widths.size() - 1);
  const double height = 2 * kPadding + metrics.lineSpacing() * static_cast<double>(rows.size());

  const QRectF box = placed({width, height}, area, pointer);
  QColor fill = theme_.background;
  fill.setAlphaF(0.93F);
  painter.save();
  painter.setFont(font_);
  painter.setPen(QPen(theme_.frame, 1));
  painter.setBrush(fill);
  painter.drawRoundedRect(box, 3, 3);

  double y = box.top() + kPadding;
  for (std::size_t row = 0; row < rows.size(); ++row, y += metrics.lineSpacing()) {
    double x = box.left() + kPadding;
    if (row > 0) {
      const QRectF swatch(x, y + (metrics.lineSpacing() - kReadoutSwatch) / 2, kReadoutSwatch,
                          kReadoutSwatch);
      painter.fillRect(swatch, theme_.colour(plot_.dataSets[sets[row - 1]], plot_.paneCount()));
    }
    x += kReadoutSwatch + kPadding;
    painter.setPen(theme_.text);
    for (std::size_t column = 0; column < widths.size(); ++column) {
      const auto alignment = column == 0 ? Qt::AlignLeft : Qt::AlignRight;
      painter.drawText(QRectF(x, y, widths[column], metrics.lineSpacing()),
                       alignment | Qt::AlignVCenter, rows[row][static_cast<qsizetype>(column)]);
      x += widths[column] + kReadoutGap;
    }
  }
  painter.restore();
}

}  // namespace orv::app
