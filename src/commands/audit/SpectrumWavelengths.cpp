// Rules on the wavelengths of a spectrum.
#include <algorithm>
#include <functional>

#include "commands/audit/Curves.h"
#include "commands/audit/SpectrumRules.h"
#include "optics/Coverage.h"
#include "optics/Rules.h"

namespace orv::commands::audit {

namespace {

/// The gaps by all standards, ascending, each once.
std::vector<optics::Gap> allGaps(const std::vector<double>& wavelengths) {
  std::vector<optics::Gap> gaps;
  for (const auto& standard : optics::kStandardNames) {
    for (const auto& rule : optics::rulesOf(standard.standard).means) {
      const auto coverage = optics::coverageOf(rule.weights, wavelengths);
      gaps.insert(gaps.end(), coverage.gaps.begin(), coverage.gaps.end());
    }
  }
  std::ranges::sort(gaps, {}, &optics::Gap::from);
  gaps.erase(std::unique(gaps.begin(), gaps.end()), gaps.end());
  return gaps;
}

/// Whether a gap is where the spectrum has points elsewhere.
bool isOfMissingPoints(const optics::Gap& gap, const std::vector<double>& wavelengths) {
  const auto right = std::ranges::find(wavelengths, gap.to) - wavelengths.begin();
  const double usual = optics::usualStep(wavelengths, static_cast<std::size_t>(right));
  return gap.to - gap.from > optics::kMissingPoint * usual;
}

std::vector<Fault> toldOnce(const std::vector<optics::Gap>& gaps, const std::string& what) {
  if (gaps.empty()) return {};
  const auto widest =
      std::ranges::max_element(gaps, {}, [](const optics::Gap& gap) { return gap.to - gap.from; });
  return {{.field = "wavelength",
           .value = fmt::format("{:g} nm", widest->to - widest->from),
           .message = what + optics::told(gaps),
           .wavelength = widest->from}};
}

std::vector<optics::Gap> gapsThat(const DataSet& set, bool areOfMissingPoints) {
  auto found = allGaps(set.spectrum.wavelengths);
  std::erase_if(found, [&](const optics::Gap& gap) {
    return isOfMissingPoints(gap, set.spectrum.wavelengths) != areOfMissingPoints;
  });
  return found;
}

}  // namespace

std::vector<Fault> gaps(const DataSet& set) {
  return toldOnce(gapsThat(set, true), "Points are missing: ");
}

std::vector<Fault> coarseSteps(const DataSet& set) {
  return toldOnce(gapsThat(set, false), "The steps are wide: ");
}

std::vector<Fault> doubledWavelengths(const DataSet& set) {
  std::vector<double> sorted = set.wavelengths;
  std::ranges::sort(sorted);
  WorstPoint doubled;
  for (std::size_t i = 1; i < sorted.size(); ++i) {
    if (sorted[i] == sorted[i - 1]) doubled.add(sorted[i], sorted[i], 0);
  }
  if (!doubled.isThere()) return {};
  return {{.field = "wavelength",
           .value = place(doubled.wavelength()),
           .expected = "one point at a wavelength",
           .message = "There are several points" + doubled.where(),
           .wavelength = doubled.wavelength()}};
}

/// A file that begins at the long end is in order, too.
std::vector<Fault> unorderedWavelengths(const DataSet& set) {
  const auto& all = set.wavelengths;
  if (std::ranges::is_sorted(all) || std::ranges::is_sorted(all, std::greater<>())) return {};
  const auto first = std::ranges::is_sorted_until(all);
  return {{.field = "wavelength",
           .value = place(*first),
           .expected = fmt::format("more than {}", place(*(first - 1))),
           .message = "Wavelengths are in no order",
           .wavelength = *first}};
}

/// By EN 410, whose values ask for the least.
std::vector<Fault> tooShort(const DataSet& set) {
  const auto& integration = set.integrations[static_cast<std::size_t>(optics::Standard::en410)];
  std::vector<Fault> faults;
  for (const char* name : {"Tf_sol", "Tf_vis"}) {
    const optics::Value& value = *integration.find(name);
    if (value.value) continue;
    faults.push_back(
        {.field = "wavelength",
         .value = fmt::format("{} to {}", place(set.spectrum.wavelengths.front()),
                              place(set.spectrum.wavelengths.back())),
         .expected = fmt::format("{:.0f} % of the weight", 100 * optics::kLeastCovered),
         .message = "There are " + value.reason});
  }
  return faults;
}

}  // namespace orv::commands::audit
