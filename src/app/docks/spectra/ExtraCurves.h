#pragma once

#include <QPointF>
#include <QString>
#include <vector>

#include "app/docks/spectra/SpectrumPlot.h"

namespace orv::app {

/// What is drawn besides the curves of the data sets.
struct ExtraCurve {
  enum class Kind {
    solarWeight,    ///< area
    visibleWeight,  ///< area
    band,           ///< area from the least to the greatest value
    mean,           ///< line
    difference,     ///< line
  };

  Kind kind;
  SpectralQuantity quantity;     ///< of a band, a mean or a difference
  std::vector<QPointF> line;     ///< x in microns, ascending; the upper edge of an area
  std::vector<QPointF> below{};  ///< the lower edge of an area

  bool isArea() const { return !below.empty(); }
  bool operator==(const ExtraCurve&) const = default;
};

/// "Mean", "First minus second", ...
QString nameOf(ExtraCurve::Kind kind);

/// The data sets whose curves are shown.
std::vector<const SpectrumDataSet*> shownDataSets(const SpectrumPlot& plot);

/// What the plot asks for, where there are curves enough: a difference is that of two data sets, a
/// mean with its band that of two or more, over the wavelengths that they have in common; of the
/// data sets in the band always, where there is one. A weighting has its greatest density at 1.
/// Areas first.
std::vector<ExtraCurve> extraCurves(const SpectrumPlot& plot);

/// What the extra curves of a plot depend on, besides its data sets.
struct ExtraChoice {
  explicit ExtraChoice(const SpectrumPlot& plot);
  bool operator==(const ExtraChoice&) const = default;

  std::vector<bool> hidden;
  std::array<bool, kSpectralQuantities.size()> quantities;
  std::optional<int> angle;
  std::array<bool, 3> shows;
  optics::Standard standard;
};

}  // namespace orv::app
