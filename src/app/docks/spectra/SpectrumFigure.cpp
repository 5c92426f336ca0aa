#include "app/docks/spectra/SpectrumFigure.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QGraphicsLayout>
#include <QGraphicsScene>
#include <QPrinter>
#include <QSaveFile>
#include <QSvgGenerator>

#include "app/docks/spectra/FigureLegend.h"
#include "app/docks/spectra/SpectrumChart.h"
#include "app/docks/spectra/SpectrumCsv.h"

namespace orv::app {

namespace {

constexpr QSize kSize{1000, 640};
constexpr double kImageScale = 2;  ///< pixels of an image for each unit of the figure

/// Writes all or nothing.
bool save(const QString& path, const QByteArray& data, QString& reason) {
  QSaveFile file(path);
  if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit()) {
    return true;
  }
  reason = file.errorString();
  return false;
}

}  // namespace

void SpectrumFigure::paint(QPainter& painter, const QRectF& area) const {
  const PlotTheme theme = PlotTheme::paper();
  painter.fillRect(area, theme.background);
  const FigureLegend legend(plot_, theme, area.width());

  QGraphicsScene scene;
  auto* chart = new SpectrumChart(theme);
  scene.addItem(chart);
  chart->resize(area.width(), area.height() - legend.height());
  chart->showCurves(plot_);
  // Outside an event loop nobody else lays out the axes.
  chart->layout()->activate();
  const QRectF chartArea(area.topLeft(), chart->size());
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  scene.render(&painter, chartArea, QRectF(QPointF(0, 0), chart->size()));
  legend.draw(painter, chartArea.bottomLeft());
  painter.restore();
}

QImage SpectrumFigure::image() const {
  QImage image(kSize * kImageScale, QImage::Format_RGB32);
  image.setDevicePixelRatio(kImageScale);
  image.fill(Qt::white);
  QPainter painter(&image);
  paint(painter, QRectF(QPointF(0, 0), kSize));
  return image;
}

void SpectrumFigure::print(QPrinter& printer) const {
  QPainter painter(&printer);
  const QRectF page = painter.viewport();
  const double scale = page.width() / kSize.width();
  painter.scale(scale, scale);
  const double height = std::min<double>(kSize.height(), page.height() / scale);
  paint(painter, QRectF(0, 0, kSize.width(), height));
}

bool SpectrumFigure::savePng(const QString& path, QString& reason) const {
  QByteArray data;
  QBuffer buffer(&data);
  buffer.open(QIODevice::WriteOnly);
  return image().save(&buffer, "PNG") && save(path, data, reason);
}

bool SpectrumFigure::saveSvg(const QString& path, QString& reason) const {
  QByteArray data;
  QBuffer buffer(&data);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize(kSize);
  generator.setViewBox(QRect(QPoint(0, 0), kSize));
  generator.setTitle(QCoreApplication::translate("SpectrumFigure", "Spectra of panes"));
  QPainter painter(&generator);
  paint(painter, QRectF(QPointF(0, 0), kSize));
  painter.end();
  return save(path, data, reason);
}

bool SpectrumFigure::saveCsv(const QString& path, QString& reason) const {
  return save(path, spectraAsText(plot_).toUtf8(), reason);
}

}  // namespace orv::app
