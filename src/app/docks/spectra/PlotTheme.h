#pragma once

#include <QBrush>
#include <QColor>
#include <QPalette>
#include <QPen>

#include "app/docks/spectra/ExtraCurves.h"

namespace orv::app {

/// The colours and pens of a plot. Colours tell the panes apart (or the angles, when one pane is
/// shown alone) and stay distinct for the colour-blind as long as they are `kMostCurves` at most;
/// dashes tell the quantities apart. Later angles of a pane are drawn thinner and paler.
class PlotTheme {
 public:
  static PlotTheme of(const QPalette& palette);
  /// Dark on white, for files and paper.
  static PlotTheme paper();

  QColor background;
  QColor text;
  QColor grid;
  QColor frame;

  /// The colour of a data set among those of a plot.
  QColor colour(const SpectrumDataSet& set, int paneCount) const;
  QPen pen(const SpectrumDataSet& set, int paneCount, SpectralQuantity quantity) const;
  /// A pen that shows the dashes of a quantity, whatever the pane.
  QPen sample(SpectralQuantity quantity) const;

  /// Pen of a line, brush of an area.
  QPen pen(const ExtraCurve& curve) const;
  QBrush brush(ExtraCurve::Kind kind) const;

  bool isDark() const { return background.lightness() < 128; }

 private:
  QColor hue(int number) const;
};

}  // namespace orv::app
