#include "app/docks/spectra/SpectrumPlot.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numeric>
#include <set>
#include <tuple>

#include "app/docks/spectra/ExtraCurves.h"

namespace orv::app {

namespace {

QString translatedLabel(const char* text) {
  return QCoreApplication::translate("SpectrumPlot", text);
}

QString paneName(const GlazingData& pane) {
  for (const std::string& name : {pane.filename(), pane.productname()}) {
    if (!name.empty()) return QString::fromStdString(name);
  }
  return translatedLabel("Pane %1").arg(pane.id());
}

/// Copies the points in ascending order of wavelength. Those at 0 have no place on a logarithmic
/// axis and no meaning.
void copySpectrum(const SpectralData& spectrum, SpectrumDataSet& set) {
  std::vector<std::int32_t> order(spectrum.count());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](auto a, auto b) { return spectrum.wl(a) < spectrum.wl(b); });
  for (const std::int32_t i : order) {
    if (spectrum.wl(i) <= 0) continue;
    set.wavelengths.push_back(spectrum.ConvertedWl(i, kMicrons));
    set.values[0].push_back(spectrum.Tf(i));
    set.values[1].push_back(spectrum.Rf(i));
    set.values[2].push_back(spectrum.Rb(i));
  }
}

/// Gives each record its pane and its place among the angles of the pane.
class PaneNumbering {
 public:
  void number(SpectrumDataSet& set) {
    const GlazingData& record = *set.record;
    const Key key{record.id(), record.filename(), record.productname(), record.supplier(),
                  record.group()};
    auto [found, isNew] = panes_.try_emplace(key, Pane{next_, {}});
    // The same pane at the same angle again comes from another source: a pane of its own.
    const std::pair place(set.angle, set.direction);
    if (!isNew && found->second.places.count(place) > 0) found->second = Pane{next_, {}};
    Pane& pane = found->second;
    if (pane.number == next_) ++next_;
    set.pane = pane.number;
    set.angleIndex = static_cast<int>(pane.places.size());
    pane.places.insert(place);
  }

 private:
  using Key = std::tuple<std::int32_t, std::string, std::string, std::string, std::string>;
  struct Pane {
    int number;
    std::set<std::pair<int, int>> places;  ///< angle and direction
  };
  std::map<Key, Pane> panes_;
  int next_ = 0;
};

/// Names a data set by its pane, by its angle unless that is the pane's only one, 0, and by its
/// direction where there are several at the angle.
void label(std::vector<SpectrumDataSet>& sets) {
  std::map<int, int> ofPane;
  std::map<std::pair<int, int>, int> ofAngle;
  for (const auto& set : sets) {
    ++ofPane[set.pane];
    ++ofAngle[{set.pane, set.angle}];
  }
  for (auto& set : sets) {
    const bool namesAngle = ofPane[set.pane] > 1 || set.angle != 0;
    set.label = namesAngle ? translatedLabel("%1, %2°").arg(set.name).arg(set.angle) : set.name;
    if (ofAngle[{set.pane, set.angle}] > 1) {
      set.label = translatedLabel("%1, direction %2").arg(set.label).arg(set.direction);
    }
  }
}

/// Where there are too many panes to be told apart.
void putInBand(std::vector<SpectrumDataSet>& sets) {
  int panes = 0;
  for (const auto& set : sets) panes = std::max(panes, set.pane + 1);
  if (panes <= kMostCurves) return;
  for (auto& set : sets) set.isInBand = !set.isPinned;
}

/// 0 where there is none below.
double leastDifference(const SpectrumPlot& plot) {
  double least = 0;
  if (!plot.showsDifference || plot.hasBand()) return least;
  for (const ExtraCurve& curve : extraCurves(plot)) {
    if (curve.kind != ExtraCurve::Kind::difference) continue;
    for (const QPointF& point : curve.line) least = std::min(least, point.y());
  }
  return least;
}

}  // namespace

QString symbolOf(SpectralQuantity quantity) {
  switch (quantity) {
    case SpectralQuantity::transmittance:
      return translatedLabel("T");
    case SpectralQuantity::frontReflectance:
      return translatedLabel("Rf");
    case SpectralQuantity::backReflectance:
      return translatedLabel("Rb");
  }
  return {};
}

QString nameOf(SpectralQuantity quantity) {
  switch (quantity) {
    case SpectralQuantity::transmittance:
      return translatedLabel("Transmittance");
    case SpectralQuantity::frontReflectance:
      return translatedLabel("Reflectance, front");
    case SpectralQuantity::backReflectance:
      return translatedLabel("Reflectance, back");
  }
  return {};
}

std::optional<double> SpectrumDataSet::valueAt(SpectralQuantity quantity, double microns) const {
  if (!hasSpectrum() || microns < wavelengths.front() || microns > wavelengths.back()) return {};
  const auto& y = of(quantity);
  const auto right = std::lower_bound(wavelengths.begin(), wavelengths.end(), microns);
  const auto i = static_cast<std::size_t>(right - wavelengths.begin());
  if (*right == microns) return y[i];
  const double share = (microns - wavelengths[i - 1]) / (wavelengths[i] - wavelengths[i - 1]);
  return std::lerp(y[i - 1], y[i], share);
}

std::vector<SpectrumDataSet> dataSetsOf(const std::vector<SpectrumRecord>& records) {
  std::vector<SpectrumDataSet> sets;
  PaneNumbering numbering;
  for (const auto& [pane, isPinned, name] : records) {
    if (!pane) continue;
    SpectrumDataSet set;
    set.record = pane;
    set.isPinned = isPinned;
    set.name = name.isEmpty() ? paneName(*pane) : name;
    set.angle = pane->ORV_Angle();
    set.direction = pane->ORV_Direction();
    numbering.number(set);
    if (pane->SpectralData()) copySpectrum(*pane->SpectralData(), set);
    sets.push_back(std::move(set));
  }
  label(sets);
  putInBand(sets);
  return sets;
}

void SpectrumPlot::setRecords(const std::vector<SpectrumRecord>& records) {
  dataSets = dataSetsOf(records);
  hidden.assign(dataSets.size(), false);
  const auto known = angles();
  if (angle && std::find(known.begin(), known.end(), *angle) == known.end()) angle.reset();
  if (dataSets.empty() && zoomed) return;
  if (zoomed && range.intersects(fullRange())) {
    range &= fullRange();
  } else {
    zoomed = false;
  }
  fit();
}

void SpectrumPlot::fit() {
  if (!zoomed) range = fullRange();
}

bool SpectrumPlot::showsDataSet(std::size_t index) const {
  return !hidden[index] && (!angle || dataSets[index].angle == *angle);
}

bool SpectrumPlot::hasSpectra() const {
  return std::any_of(dataSets.begin(), dataSets.end(),
                     [](const auto& set) { return set.hasSpectrum(); });
}

bool SpectrumPlot::hasBand() const {
  return std::any_of(dataSets.begin(), dataSets.end(),
                     [](const auto& set) { return set.isInBand; });
}

int SpectrumPlot::paneCount() const {
  int count = 0;
  for (const auto& set : dataSets) count = std::max(count, set.pane + 1);
  return count;
}

std::vector<int> SpectrumPlot::angles() const {
  std::set<int> angles;
  for (const auto& set : dataSets) angles.insert(set.angle);
  return {angles.begin(), angles.end()};
}

QRectF SpectrumPlot::fullRange() const {
  double shortest = std::numeric_limits<double>::max();
  double longest = 0;
  double highest = 1;
  for (std::size_t i = 0; i < dataSets.size(); ++i) {
    const auto& set = dataSets[i];
    if (!showsDataSet(i) || !set.hasSpectrum()) continue;
    shortest = std::min(shortest, set.wavelengths.front());
    longest = std::max(longest, set.wavelengths.back());
    for (const auto quantity : kSpectralQuantities) {
      if (!shows(quantity)) continue;
      highest =
          std::max(highest, *std::max_element(set.of(quantity).begin(), set.of(quantity).end()));
    }
  }
  if (longest == 0) {
    shortest = 0.3;
    longest = 2.5;
  } else if (longest == shortest) {
    shortest *= 0.9;
    longest *= 1.1;
  }
  const double left = scale.position(shortest);
  const double lowest = leastDifference(*this);
  return {left, lowest, scale.position(longest) - left, highest - lowest};
}

}  // namespace orv::app
