#include "app/docks/spectra/ExtraCurves.h"

#include <QCoreApplication>
#include <algorithm>
#include <set>

#include "optics/Rules.h"

namespace orv::app {

using Kind = ExtraCurve::Kind;
using DataSets = std::vector<const SpectrumDataSet*>;

namespace {

constexpr double kNanometersPerMicron = 1000;

/// All wavelengths of data sets between those that every one of them reaches.
std::vector<double> commonWavelengths(const DataSets& sets) {
  double shortest = 0;
  double longest = sets.front()->wavelengths.back();
  std::set<double> all;
  const std::vector<double>* last = nullptr;  // most panes are measured at the same ones
  for (const auto* set : sets) {
    shortest = std::max(shortest, set->wavelengths.front());
    longest = std::min(longest, set->wavelengths.back());
    if (!last || *last != set->wavelengths) {
      all.insert(set->wavelengths.begin(), set->wavelengths.end());
    }
    last = &set->wavelengths;
  }
  if (shortest > longest) return {};
  return {all.lower_bound(shortest), all.upper_bound(longest)};
}

/// The values of all data sets at a wavelength that they have in common.
std::vector<double> valuesAt(const DataSets& sets, SpectralQuantity quantity, double microns) {
  std::vector<double> values;
  for (const auto* set : sets) values.push_back(set->valueAt(quantity, microns).value_or(0));
  return values;
}

void addDifference(const DataSets& sets, SpectralQuantity quantity, std::vector<ExtraCurve>& all) {
  ExtraCurve curve{Kind::difference, quantity, {}};
  for (const double at : commonWavelengths(sets)) {
    const auto values = valuesAt(sets, quantity, at);
    curve.line.emplace_back(at, values[0] - values[1]);
  }
  if (!curve.line.empty()) all.push_back(std::move(curve));
}

void addMean(const DataSets& sets, SpectralQuantity quantity, std::vector<ExtraCurve>& all) {
  ExtraCurve band{Kind::band, quantity, {}};
  ExtraCurve mean{Kind::mean, quantity, {}};
  for (const double at : commonWavelengths(sets)) {
    const auto values = valuesAt(sets, quantity, at);
    double sum = 0;
    for (const double value : values) sum += value;
    mean.line.emplace_back(at, sum / static_cast<double>(values.size()));
    const auto [least, greatest] = std::ranges::minmax(values);
    band.line.emplace_back(at, greatest);
    band.below.emplace_back(at, least);
  }
  if (mean.line.empty()) return;
  all.push_back(std::move(band));
  all.push_back(std::move(mean));
}

/// Tables of weights have the interval of wavelengths in them, which the density has not.
void addWeighting(const optics::Weights& weights, Kind kind, std::vector<ExtraCurve>& all) {
  ExtraCurve curve{kind, SpectralQuantity::transmittance, {}};
  double greatest = 0;
  for (std::size_t i = 1; i + 1 < weights.size(); ++i) {
    const double interval = (weights[i + 1].wavelength - weights[i - 1].wavelength) / 2;
    const double density = weights[i].value / interval;
    greatest = std::max(greatest, density);
    curve.line.emplace_back(weights[i].wavelength / kNanometersPerMicron, density);
  }
  if (greatest <= 0) return;
  for (QPointF& point : curve.line) {
    point.ry() /= greatest;
    curve.below.emplace_back(point.x(), 0);
  }
  all.push_back(std::move(curve));
}

QString translated(const char* text) {
  return QCoreApplication::translate("ExtraCurves", text);
}

}  // namespace

QString nameOf(Kind kind) {
  switch (kind) {
    case Kind::solarWeight:
      return translated("Solar weighting");
    case Kind::visibleWeight:
      return translated("Visible weighting");
    case Kind::band:
      return translated("Band");
    case Kind::mean:
      return translated("Mean");
    case Kind::difference:
      return translated("First minus second");
  }
  return {};
}

DataSets shownDataSets(const SpectrumPlot& plot) {
  DataSets sets;
  for (std::size_t i = 0; i < plot.dataSets.size(); ++i) {
    if (plot.showsDataSet(i) && plot.dataSets[i].hasSpectrum()) sets.push_back(&plot.dataSets[i]);
  }
  return sets;
}

ExtraChoice::ExtraChoice(const SpectrumPlot& plot)
    : hidden(plot.hidden),
      quantities(plot.quantities),
      angle(plot.angle),
      shows{plot.showsWeighting, plot.showsDifference, plot.showsMean},
      standard(plot.standard) {}

std::vector<ExtraCurve> extraCurves(const SpectrumPlot& plot) {
  std::vector<ExtraCurve> all;
  const DataSets sets = shownDataSets(plot);
  DataSets together = plot.showsMean ? sets : DataSets();
  if (plot.hasBand()) {
    together = sets;
    std::erase_if(together, [](const SpectrumDataSet* set) { return !set->isInBand; });
  }
  if (plot.showsWeighting && !sets.empty()) {
    for (const optics::MeanRule& rule : optics::rulesOf(plot.standard).means) {
      const std::string_view range = rule.range;
      if (range == "solar") addWeighting(rule.weights, Kind::solarWeight, all);
      if (range == "visible") addWeighting(rule.weights, Kind::visibleWeight, all);
    }
  }
  for (const SpectralQuantity quantity : kSpectralQuantities) {
    if (!plot.shows(quantity)) continue;
    if (together.size() > 1) addMean(together, quantity, all);
    if (plot.showsDifference && !plot.hasBand() && sets.size() == 2)
      addDifference(sets, quantity, all);
  }
  std::ranges::stable_partition(all, &ExtraCurve::isArea);
  return all;
}

}  // namespace orv::app
