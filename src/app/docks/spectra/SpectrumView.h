#pragma once

#include <QChartView>
#include <QPixmap>
#include <QRubberBand>
#include <optional>

#include "app/docks/spectra/SpectrumChart.h"

namespace orv::app {

/// The plot on the screen: shows the values under the pointer and changes the range of the plot.
///
/// Dragging with the left button zooms into a rectangle, with the middle button or Shift moves
/// the plot; the wheel zooms at the pointer (with Ctrl the wavelengths only, with Shift the values
/// only); a double click shows everything. Keys: + and - zoom, 0 or Home shows everything, the
/// arrows move the cross hair.
///
/// The chart is painted into a pixmap when it changes, so that the cross hair follows the pointer
/// at once however many curves there are.
class SpectrumView : public QChartView {
  Q_OBJECT

 public:
  /// The plot outlives the view.
  SpectrumView(SpectrumPlot& plot, QWidget* parent = nullptr);

  void showCurves();         ///< after a change of the data or the scale
  void showView();           ///< after any other change of the plot
  void zoom(double factor);  ///< about the middle; above 1 shows less
  void showAll();

  /// The wavelength that the cross hair is at, in microns; none while it is not shown.
  std::optional<double> pointedWavelength() const;
  /// Places the cross hair at a point of the widget.
  void pointAt(const QPointF& position);
  /// Places it at a wavelength, in microns, on the curve of a data set where one is given, and
  /// shows everything where that is out of sight.
  void pointAtWavelength(double microns, std::optional<std::size_t> dataSet);
  /// Draws a data set emphasized, as the legend asks for the one under the pointer.
  void emphasize(std::optional<std::size_t> dataSet);

  QSize sizeHint() const override { return {640, 360}; }
  QSize minimumSizeHint() const override { return {180, 110}; }

 signals:
  void rangeChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  enum class Drag { none, zoom, move };

  QRectF plotArea() const;
  QPointF toPlot(const QPointF& position) const;  ///< widget to (scale position, fraction)
  QPointF toWidget(const QPointF& point) const;   ///< and back
  void setRange(QRectF range);
  void zoomAt(const QPointF& anchor, double factorX, double factorY);
  void renderChart();
  void drawCurve(QPainter& painter, std::size_t dataSet) const;
  void drawCrossHair(QPainter& painter) const;
  std::optional<std::size_t> nearestDataSet(const QPointF& position) const;

  SpectrumPlot& plot_;
  SpectrumChart* chart_;
  QPixmap picture_;
  bool pictureIsStale_ = true;
  QRubberBand* rubberBand_;
  Drag drag_ = Drag::none;
  QPointF dragStart_;
  QRectF dragRange_;
  std::optional<QPointF> pointer_;
  std::optional<QPointF> awaited_;  ///< the point of the plot where it goes when that has its place
  std::optional<std::size_t> emphasized_;
};

}  // namespace orv::app
