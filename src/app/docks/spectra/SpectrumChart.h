#pragma once

#include <QCategoryAxis>
#include <QChart>
#include <QLineSeries>
#include <QValueAxis>
#include <array>
#include <vector>

#include "app/docks/spectra/PlotTheme.h"
#include "app/docks/spectra/SpectrumPlot.h"

namespace orv::app {

/// The curves of a plot with their axes, for the screen, for files and for paper. It has no legend:
/// the places where it is shown have room for different ones.
///
/// Points lie at the positions of the wavelength scale, so a logarithmic axis is an even one with
/// labels at round wavelengths; the logarithmic axis of the toolkit labels powers of ten only.
class SpectrumChart : public QChart {
  Q_OBJECT

 public:
  explicit SpectrumChart(PlotTheme theme);

  /// Shows the curves of a plot in place of the former ones.
  void showCurves(const SpectrumPlot& plot);
  /// Follows a change of what the plot hides, of its range or unit; the data are as before.
  void showView(const SpectrumPlot& plot);
  void setPlotTheme(const PlotTheme& theme, const SpectrumPlot& plot);

 protected:
  void resizeEvent(QGraphicsSceneResizeEvent* event) override;

 private:
  using Curves = std::array<QLineSeries*, kSpectralQuantities.size()>;

  void addCurves(const SpectrumDataSet& set, const WavelengthScale& scale);
  void addExtras(bool areas, const WavelengthScale& scale);
  void attach(QAbstractSeries* series);
  void applyPens(const SpectrumPlot& plot);
  void applyColours();
  void updateTicks();

  PlotTheme theme_;
  QCategoryAxis* wavelengths_;
  QValueAxis* fractions_;
  std::vector<Curves> curves_;
  std::vector<ExtraCurve> extras_;
  std::optional<ExtraChoice> choice_;  ///< what the extra curves are of
  WavelengthScale scale_;
  QRectF range_;
};

}  // namespace orv::app
