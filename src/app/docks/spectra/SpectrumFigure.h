#pragma once

#include <QImage>
#include <QPainter>
#include <QString>

#include "app/docks/spectra/SpectrumPlot.h"

class QPrinter;

namespace orv::app {

/// A plot for documents: the curves in the range that is shown, dark on white whatever the theme of
/// the window, with a legend below.
class SpectrumFigure {
 public:
  /// The plot outlives the figure.
  explicit SpectrumFigure(const SpectrumPlot& plot) : plot_(plot) {}

  /// Fills the area, whose unit should be about a pixel of a screen.
  void paint(QPainter& painter, const QRectF& area) const;

  QImage image() const;
  /// One page, as large as it goes.
  void print(QPrinter& printer) const;

  /// Writes a file, replacing one that is there. False, with the reason, when it cannot.
  bool savePng(const QString& path, QString& reason) const;
  bool saveSvg(const QString& path, QString& reason) const;
  bool saveCsv(const QString& path, QString& reason) const;

 private:
  const SpectrumPlot& plot_;
};

}  // namespace orv::app
