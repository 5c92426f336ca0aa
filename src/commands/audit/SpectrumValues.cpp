// Rules on the values of a spectrum.
#include <algorithm>
#include <limits>

#include "commands/audit/Curves.h"
#include "commands/audit/SpectrumRules.h"

namespace orv::commands::audit {

namespace {

/// The mean of a curve between two wavelengths, ends included; none where it has no point.
std::optional<double> meanBetween(const DataSet& set, Curve curve, double from, double to) {
  double sum = 0;
  int count = 0;
  for (std::size_t i = 0; i < set.spectrum.wavelengths.size(); ++i) {
    const double at = set.spectrum.wavelengths[i];
    if (at < from || at > to) continue;
    sum += set.spectrum[curve][i];
    ++count;
  }
  return count == 0 ? std::nullopt : std::optional(sum / count);
}

std::optional<Fault> gainOn(const DataSet& set, Curve T, Curve R, const char* field) {
  WorstPoint worst;
  for (std::size_t i = 0; i < set.spectrum.wavelengths.size(); ++i) {
    const double most = std::max(set.spectrum[T][i], set.spectrum[R][i]);
    const double sum = set.spectrum[T][i] + set.spectrum[R][i];
    if (most > 1 + kMeasuringError) continue;  // told by another rule
    if (sum > 1 + kMeasuringError) worst.add(set.spectrum.wavelengths[i], sum, sum);
  }
  if (!worst.isThere()) return std::nullopt;
  return Fault{.field = field,
               .value = shortNumber(worst.value()),
               .expected = "1 at most",
               .message = "Transmittance and reflectance add up to more than 1" + worst.where(),
               .wavelength = worst.wavelength()};
}

/// The least emissivity that is known of a pane, of the spectrum or as stated.
std::optional<double> leastEmissivity(const DataSet& set) {
  const auto surfaces = optics::surfacesOf(*set.pane);
  std::optional<double> least;
  for (const auto& each : {surfaces.front.emissivity, surfaces.back.emissivity,
                           set.integrations.front()["ef"], set.integrations.front()["eb"]}) {
    if (each && (!least || *each < *least)) least = each;
  }
  return least;
}

/// Values below 0 or above 1 by more than `least`, of curves where none is by more than `most`.
std::vector<Fault> outsideBy(const DataSet& set, double least, double most, const char* what) {
  return eachCurve(
      set,
      [&](const std::vector<double>& values) {
        WorstPoint worst;
        for (std::size_t i = 0; i < values.size(); ++i) {
          const double excess = std::max(-values[i], values[i] - 1);
          if (excess > most) return WorstPoint();
          if (excess > least) worst.add(set.spectrum.wavelengths[i], values[i], excess);
        }
        return worst;
      },
      [&](const WorstPoint& worst, const char* name) {
        return Fault{.value = shortNumber(worst.value()),
                     .expected = "0 to 1",
                     .message = fmt::format("{} is {}{}", name, what, worst.where())};
      });
}

}  // namespace

std::vector<Fault> mistakenUnits(const DataSet& set) {
  const auto& wavelengths = set.spectrum.wavelengths;
  switch (set.units) {
    case UnitFault::none:
      return {};
    case UnitFault::percent: {
      double most = 0;
      for (const auto& curve : set.spectrum.curves) most = std::max(most, std::ranges::max(curve));
      return {{.field = "Tf, Rf, Rb",
               .value = shortNumber(most),
               .expected = "fractions",
               .message = "Values are percent where fractions belong"}};
    }
    case UnitFault::tooLong:
      return {{.field = "wavelength",
               .value = place(wavelengths.back()),
               .expected = "100 µm at most",
               .message = "Wavelengths are as long as if nanometres were taken for microns"}};
    case UnitFault::tooShort:
      break;
  }
  return {{.field = "wavelength",
           .value = place(wavelengths.front()),
           .expected = "50 nm at least",
           .message = "Wavelengths are as short as if microns were taken for nanometres"}};
}

std::vector<Fault> outsideOfFractions(const DataSet& set) {
  return outsideBy(set, kMeasuringError, std::numeric_limits<double>::infinity(), "no fraction");
}

std::vector<Fault> nearlyFractions(const DataSet& set) {
  constexpr double kRounding = 1e-6;  // of 32-bit floats
  return outsideBy(set, kRounding, kMeasuringError, "just outside of 0 to 1");
}

std::vector<Fault> gainedEnergy(const DataSet& set) {
  std::vector<Fault> faults;
  if (auto fault = gainOn(set, Curve::Tf, Curve::Rf, "Tf + Rf")) faults.push_back(*fault);
  if (auto fault = gainOn(set, Curve::Tb, Curve::Rb, "Tb + Rb")) faults.push_back(*fault);
  return faults;
}

/// A metal reflects the better the longer the wave: transmittance falls from 1 µm on.
std::vector<Fault> risingBehindMetal(const DataSet& set) {
  constexpr double kMostOfMetal = 0.3;
  constexpr double kRise = 0.02;
  const auto emissivity = leastEmissivity(set);
  if (!emissivity || *emissivity > kMostOfMetal) return {};
  const auto before = meanBetween(set, Curve::Tf, 1000, 1300);
  const auto after = meanBetween(set, Curve::Tf, 2000, 2500);
  if (!before || !after || *after <= *before + kRise) return {};
  return {
      {.field = "Tf",
       .value = shortNumber(*after),
       .expected = fmt::format("{} at most", shortNumber(*before)),
       .message = fmt::format("With an emissivity of {} transmittance falls in the infrared, "
                              "but it is {} from 1000 to 1300 nm and {} from 2000 to 2500 nm",
                              shortNumber(*emissivity), shortNumber(*before), shortNumber(*after)),
       .wavelength = 2000}};
}

}  // namespace orv::commands::audit
