#pragma once

#include <QFont>
#include <QPainter>
#include <QStringList>
#include <optional>
#include <vector>

#include "app/docks/spectra/PlotTheme.h"

namespace orv::app {

/// The box beside the cross hair: the wavelength and the values of the curves there. All data sets
/// while they are few, else the one nearest to the pointer.
class Readout {
 public:
  Readout(const SpectrumPlot& plot, const PlotTheme& theme, const QFont& font)
      : plot_(plot), theme_(theme), font_(font) {}

  /// The lines of the box: the wavelength with the symbols of the quantities, then the name and
  /// the values of each data set.
  std::vector<QStringList> lines(double microns, std::optional<std::size_t> nearest) const;

  /// Draws the box near `pointer`, inside `area`.
  void draw(QPainter& painter, const QRectF& area, const QPointF& pointer, double microns,
            std::optional<std::size_t> nearest) const;

 private:
  std::vector<std::size_t> listed(std::optional<std::size_t> nearest) const;

  const SpectrumPlot& plot_;
  const PlotTheme& theme_;
  QFont font_;
};

}  // namespace orv::app
