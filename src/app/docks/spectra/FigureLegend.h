#pragma once

#include <QPainter>
#include <QPen>
#include <QString>
#include <vector>

#include "app/docks/spectra/PlotTheme.h"

namespace orv::app {

/// The legend below a figure: the dashes of the quantities in the first row, then the colours of
/// the data sets, in as many columns as the width has room for.
class FigureLegend {
 public:
  FigureLegend(const SpectrumPlot& plot, const PlotTheme& theme, double width);

  double height() const;
  void draw(QPainter& painter, const QPointF& topLeft) const;

 private:
  struct Entry {
    QPen pen;
    QString text;
  };

  void addExtras(const SpectrumPlot& plot, const PlotTheme& theme);
  int rows() const;
  void drawEntry(QPainter& painter, const QPointF& topLeft, const Entry& entry) const;

  std::vector<Entry> quantities_;
  std::vector<Entry> dataSets_;
  QColor textColour_;
  double columnWidth_ = 0;
  int columns_ = 1;
};

}  // namespace orv::app
