#include "optics/Integrator.h"

#include <fmt/format.h>

#include <algorithm>

#include "model/Single.h"
#include "optics/ColourRendering.h"
#include "optics/Rules.h"
#include "optics/SolarGain.h"

namespace orv::optics {

namespace {

constexpr double kPercent = 100;

void addOnce(std::vector<std::string>& texts, const std::string& text) {
  if (std::ranges::find(texts, text) == texts.end()) texts.push_back(text);
}

std::string shortage(const std::string& what, const Coverage& coverage) {
  return fmt::format("no {}: the spectrum covers {:.3g} % of the weight; {} are missing", what,
                     kPercent * coverage.covered, coverage.missing());
}

/// The weights of one range, and what is to be said of each value by them.
struct Range {
  Coverage coverage;
  std::string remark;

  explicit Range(Coverage of) : coverage(std::move(of)), remark(told(coverage.gaps)) {}

  /// A value of which the rest is still to be told.
  Value begin(std::string_view name) const {
    Value value{.name = name, .covered = coverage.covered};
    if (!remark.empty()) value.remarks.push_back(remark);
    return value;
  }
};

const Coverage& worstOf(const std::array<Coverage, 3>& coverage) {
  return *std::ranges::min_element(coverage, {}, &Coverage::covered);
}

/// The gaps of all of them, ascending, each once.
std::string allGaps(const std::vector<Range>& ranges) {
  std::vector<Gap> gaps;
  for (const Range& range : ranges) {
    for (const Gap& gap : range.coverage.gaps) {
      if (std::ranges::find(gaps, gap) == gaps.end()) gaps.push_back(gap);
    }
  }
  std::ranges::sort(gaps, {}, &Gap::from);
  return told(gaps);
}

constexpr std::string_view kColourNames[][6] = {{"X", "Y", "Z", "L", "a", "b"},
                                                {"Rf_X", "Rf_Y", "Rf_Z", "Rf_L", "Rf_a", "Rf_b"},
                                                {"Rb_X", "Rb_Y", "Rb_Z", "Rb_L", "Rb_a", "Rb_b"}};
constexpr Curve kColourCurves[] = {Curve::Tf, Curve::Rf, Curve::Rb};

Integration without(Integration integration, const std::string& reason) {
  for (Value& value : integration.values) value.reason = reason;
  return integration;
}

bool hasSpectrum(const GlazingData& pane) {
  return pane.SpectralData() != nullptr;
}

}  // namespace

/// All that is prepared for spectra of the same wavelengths.
class Integrator::Grid {
 public:
  Grid(Standard standard, const std::vector<double>& wavelengths)
      : wavelengths_(wavelengths),
        standard_(standard),
        rules_(rulesOf(standard)),
        emissivity_(rules_.emissivity, wavelengths) {
    if (wavelengths.empty()) return;
    for (const MeanRule& rule : rules_.means) {
      means_.emplace_back(rule.weights, wavelengths);
      ranges_.emplace_back(coverageOf(rule.weights, wavelengths));
    }
    gaps_ = allGaps(ranges_);
    colour_.emplace(rules_.observer, rules_.colour, wavelengths);
    if (rules_.hasColourRendering) rendering_.emplace(wavelengths);
    colours_.emplace(worstOf(colour_->coverage()));
  }

  const std::vector<double>& wavelengths() const { return wavelengths_; }

  Integration integrate(const Spectrum& spectrum, const Surfaces& surfaces) const {
    Integration result{.standard = standard_, .values = {}, .remarks = spectrum.remarks};
    result.values.reserve(std::size(kValueNames));
    if (!gaps_.empty()) result.remarks.push_back(gaps_);
    addMeans(spectrum, result);
    const auto emissivity = addEmissivities(spectrum, surfaces, result);
    if (rules_.hasSolarGain) addSolarGain(emissivity, result);
    if (rules_.hasColourRendering) addColourRendering(spectrum, result);
    for (std::size_t i = 0; i < std::size(kColourCurves); ++i) {
      addColour(spectrum[kColourCurves[i]], kColourNames[i], result);
    }
    return result;
  }

 private:
  bool isEmpty() const { return wavelengths_.empty(); }

  void addMissing(std::string_view name, Integration& result) const {
    result.values.push_back({.name = name, .reason = "the pane has no spectrum"});
    result.lacksSpectrum = true;
  }

  void addMeans(const Spectrum& spectrum, Integration& result) const {
    for (std::size_t i = 0; i < rules_.means.size(); ++i) {
      const MeanRule& rule = rules_.means[i];
      for (std::size_t c = 0; c < kCurves.size(); ++c) {
        if (rule.names[c] == nullptr) continue;
        if (isEmpty()) {
          addMissing(rule.names[c], result);
        } else {
          addMean(i, rule.names[c], spectrum[kCurves[c]], result);
        }
      }
    }
  }

  void addMean(std::size_t i, const char* name, const std::vector<double>& curve,
               Integration& result) const {
    const MeanRule& rule = rules_.means[i];
    const Coverage& coverage = ranges_[i].coverage;
    Value& value = result.values.emplace_back(ranges_[i].begin(name));
    if (!coverage.suffices()) {
      value.reason = shortage(fmt::format("{} values", rule.range), coverage);
      result.lacksSpectrum = true;
      return;
    }
    const double mean = means_[i].mean(curve);
    if (rule.isReciprocal && mean <= 0) {
      value.reason = fmt::format("no {} value: nothing passes there", rule.range);
    } else {
      value.value = rule.isReciprocal ? 1 / mean : mean;
    }
  }

  /// Returns that of the back.
  std::optional<double> addEmissivities(const Spectrum& spectrum, const Surfaces& surfaces,
                                        Integration& result) const {
    const auto add = [&](std::string_view name, const Surface& surface, Curve T, Curve R) {
      const Emissivity emissivity = emissivity_.of(surface, spectrum[T], spectrum[R]);
      Value& value = result.values.emplace_back(
          Value{.name = name, .value = emissivity.value, .covered = emissivity.covered});
      if (!emissivity.value) {
        value.reason =
            "no emissivity: neither the spectrum, from 5 to 25 µm, nor the record has it";
      } else if (emissivity.isStated) {
        value.remarks.emplace_back(
            "stated by the record, since the spectrum does not reach so far");
      } else if (emissivity.isGuessed) {
        value.remarks.emplace_back(
            "whether this side is coated is told by the emissivity, since the record does not say");
      }
      return emissivity.value;
    };
    add("ef", surfaces.front, Curve::Tf, Curve::Rf);
    return add("eb", surfaces.back, Curve::Tb, Curve::Rb);
  }

  /// The first two values are those of solar transmittance and reflectance.
  static void addSolarGain(const std::optional<double>& emissivity, Integration& result) {
    const Value transmittance = result.values[0];
    const Value& reflectance = result.values[1];
    Value value{.name = "g",
                .covered = transmittance.covered,
                .reason = transmittance.reason,
                .remarks = transmittance.remarks};
    if (!emissivity) {
      value.reason = "no g: the emissivity of the back is not known";
    } else if (transmittance.value) {
      value.value = solarGain(*transmittance.value, *reflectance.value, *emissivity);
    }
    result.values.push_back(std::move(value));
  }

  void addColourRendering(const Spectrum& spectrum, Integration& result) const {
    if (isEmpty()) return addMissing("Ra", result);
    Value& value = result.values.emplace_back(colours_->begin("Ra"));
    if (!colours_->coverage.suffices()) {
      value.reason = shortage("colours", colours_->coverage);
      return;
    }
    value.value = rendering_->Ra(spectrum[Curve::Tf]);
    if (!value.value) value.reason = "no Ra: no visible light passes";
  }

  void addColour(const std::vector<double>& curve, std::span<const std::string_view> names,
                 Integration& result) const {
    if (isEmpty()) {
      for (const std::string_view name : names) addMissing(name, result);
      return;
    }
    const Colour colour = colour_->of(curve);
    for (std::size_t i = 0; i < names.size(); ++i) {
      Value& value = result.values.emplace_back(colours_->begin(names[i]));
      if (colours_->coverage.suffices()) {
        value.value = i < 3 ? colour.XYZ[i] : colour.Lab[i - 3];
      } else {
        value.reason = shortage("colours", colours_->coverage);
        result.lacksSpectrum = true;
      }
    }
  }

  std::vector<double> wavelengths_;
  Standard standard_;
  const Rules& rules_;
  std::vector<GridWeights> means_;
  EmissivityMethod emissivity_;
  std::optional<ColourMethod> colour_;
  std::optional<ColourRendering> rendering_;
  std::vector<Range> ranges_;     ///< of the means
  std::optional<Range> colours_;  ///< the least that one of X, Y and Z rests on
  std::string gaps_;              ///< of all means
};

Integrator::Integrator(Standard standard) : standard_(standard) {}
Integrator::~Integrator() = default;
Integrator::Integrator(Integrator&&) noexcept = default;
Integrator& Integrator::operator=(Integrator&&) noexcept = default;

Integration Integrator::integrate(const GlazingData& pane) {
  if (hasSpectrum(pane) && pane.SpectralData()->MixesAngles()) {
    return without(integrate(Spectrum(), Surfaces()),
                   "the spectrum is of several angles, which the source does not tell apart");
  }
  return integrate(hasSpectrum(pane) ? spectrumOf(*pane.SpectralData()) : Spectrum(),
                   surfacesOf(pane));
}

Integration Integrator::integrate(const Spectrum& spectrum, const Surfaces& surfaces) {
  return gridOf(spectrum.wavelengths).integrate(spectrum, surfaces);
}

const Integrator::Grid& Integrator::gridOf(const std::vector<double>& wavelengths) {
  constexpr std::size_t kMostGrids = 16;
  const auto known = std::ranges::find_if(
      grids_, [&](const auto& grid) { return grid->wavelengths() == wavelengths; });
  if (known != grids_.end()) {
    std::rotate(known, known + 1, grids_.end());
    return *grids_.back();
  }
  if (grids_.size() == kMostGrids) grids_.erase(grids_.begin());
  return *grids_.emplace_back(std::make_unique<Grid>(standard_, wavelengths));
}

const Value* Integration::find(std::string_view name) const {
  const auto found = std::ranges::find(values, name, &Value::name);
  return found == values.end() ? nullptr : &*found;
}

std::optional<double> Integration::operator[](std::string_view name) const {
  const Value* const value = find(name);
  return value == nullptr ? std::nullopt : value->value;
}

std::vector<std::string> Integration::reasons() const {
  std::vector<std::string> reasons;
  for (const Value& value : values) {
    if (!value.reason.empty()) addOnce(reasons, value.reason);
  }
  return reasons;
}

std::vector<std::string_view> valueNames(Standard standard) {
  std::vector<std::string_view> names;
  for (const Value& value : Integrator(standard).integrate(Spectrum(), Surfaces()).values) {
    names.push_back(value.name);
  }
  return names;
}

namespace {

/// Returns how many values there were for the columns that are wanted.
template <class IsWanted>
int storeWhere(const Integration& integration, GlazingData& pane, IsWanted isWanted) {
  int stored = 0;
  for (const IntegratedColumn& column : kIntegratedColumns) {
    const auto value = integration[column.name];
    if (!value || !isWanted(column)) continue;
    (pane.*column.pane)(toSingle(*value));
    ++stored;
  }
  return stored;
}

}  // namespace

int storeMissing(const Integration& integration, GlazingData& pane) {
  if (!hasIntegratedData(pane) || lacksIntegratedValues(pane)) return store(integration, pane);
  return storeWhere(integration, pane,
                    [&](const auto& column) { return (pane.*column.pane)() == 0; });
}

int store(const Integration& integration, GlazingData& pane) {
  const int stored = storeWhere(integration, pane, [](const auto&) { return true; });
  if (stored > 0 && !hasIntegratedData(pane)) pane.Precalc_Rfsol(0);
  if (stored > 0) pane.Precalc_StandardName(std::string(nameOf(integration.standard).name));
  return stored;
}

}  // namespace orv::optics
