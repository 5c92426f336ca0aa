#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>

#include "commands/audit/RecordRules.h"
#include "commands/audit/Rule.h"
#include "commands/audit/SourceRules.h"
#include "commands/audit/SpectrumRules.h"
#include "errors/Error.h"

namespace orv::commands::audit {

namespace {

using enum Severity;

constexpr Rule kRules[] = {
    {kUnreadable, error, "records that cannot be read",
     "This program can neither show nor copy them.", OnReading{}},

    // One spectrum.
    {"units", error, "curves in percent, wavelengths in another unit than they are said to be",
     "The spectrum is nonsense to whoever reads it; no other rule looks at it.",
     OnAnySpectrum{mistakenUnits}},
    {kOutside, error, "values below 0 or above 1 by more than a spectrometer errs (0.01)",
     "Parts of light are fractions.", OnSpectrum{outsideOfFractions}},
    {"near-range", warning, "values below 0 or above 1 by no more than that",
     "Other programs may refuse what is no fraction.", OnSpectrum{nearlyFractions}},
    {"energy", error, "transmittance and reflectance that add up to more than 1.01",
     "No pane throws back and lets through more than it gets.", OnSpectrum{gainedEnergy}},
    {"jump", warning, "one point that leaves its curve, by 0.02 at least, and comes back",
     "A slip of the pen, or a spike of the spectrometer.", OnSpectrum{jumps}},
    {"detector-step", warning,
     "a step of more than 0.01 from 700 to 1100 nm, where the curve is even on both sides",
     "The two detectors of the spectrometer do not agree.", OnSpectrum{detectorSteps}},
    {"constant", note, "ten points or more, over 100 nm, at which all curves stand still",
     "Values were filled in, not measured.", OnSpectrum{constantStretches}},
    {"metal-infrared", warning,
     "transmittance that rises from 1 to 2 µm though an emissivity is 0.3 or less",
     "A coating that reflects heat lets ever less through; the curve is of another pane.",
     OnSpectrum{risingBehindMetal}},
    {"gaps", warning,
     "points that are missing: more than half as wide again as the steps around, and wider than "
     "those "
     "of the standards' tables",
     "Values across a gap are guessed.", OnSpectrum{gaps}},
    {"coarse", note,
     "steps that are wider than those of the standards' tables, and than 5 nm below 400 nm, 10 nm "
     "below 1000 nm, 50 nm beyond",
     "Values are less exact than those of others.", OnSpectrum{coarseSteps}},
    {"doubled", warning, "several points at one wavelength", "At most one of them is right.",
     OnSpectrum{doubledWavelengths}},
    {"order", note, "wavelengths that neither rise nor fall",
     "Programs that expect an order read another curve.", OnSpectrum{unorderedWavelengths}},
    {"too-short", warning, "a spectrum that covers too little for the solar or the visible values",
     "The standards give no values then.", OnSpectrum{tooShort}},

    // One record.
    {"stored-values", warning,
     "stored integrated values that are more than 0.01 from those of each standard",
     "Stored values or spectrum are of another pane.", OnDataSet{storedAgainstComputed}},
    {"missing-values", warning,
     "a row of integrated values that is all 0, while there is a spectrum",
     "Programs that read the database take the pane for black.", OnPane{missingValues}},
    {"absorptance", error, "stored transmittance and reflectance that add up to more than 1.01",
     "No pane absorbs less than nothing.", OnDataSet{negativeAbsorptance}},
    {"emissivity-infrared", warning,
     "an emissivity that is more than 0.03 from that of the spectrum beyond 5 µm",
     "One of the two is of another surface.", OnDataSet{emissivityAgainstInfrared}},
    {"emissivity", error, "emissivities and infrared transmittances outside of 0 to 1",
     "They are fractions.", OnPane{notAFraction}},
    {"exchanged", warning,
     "a coated side with the emissivity of glass, while the bare one has a low one",
     "Front and back are exchanged.", OnPane{exchangedSides}},
    {"uncoated-low-e", warning, "a bare side with an emissivity below 0.7",
     "Only coatings emit so little.", OnPane{uncoatedLowEmissivity}},
    {"thickness", warning,
     "a thickness outside of 0.3 to 100 mm (foils: 0.01 to 10 mm; of unknown type 0.01 to 100 mm)",
     "An inch or a micron was taken for a millimetre.", OnPane{thicknessOfNoGlass}},
    {"conductivity", warning, "a conductivity outside of 0.1 to 2 W/(m·K)",
     "Neither glass nor plastic conducts so; another unit was meant.",
     OnPane{conductivityOfNoGlass}},
    {"missing-data", note, "no thickness, no conductivity, no emissivity",
     "Heat transfer cannot be computed.", OnPane{missingQuantities}},
    {"flags", warning, "a pane that is marked as spectral without a spectrum, and the reverse",
     "Programs look for a spectrum where the mark says so, and only there.",
     OnPane{contradictingFlag}},
    {"half-angles", warning,
     "an angle with integrated values but no spectrum, or the reverse, or with two rows",
     "Only half of the data is copied and found.", OnPane{halfAngles}},
    {"angle", error, "an angle of incidence outside of 0 to 90 degrees", "Nothing comes in there.",
     OnPane{noAngle}},
    {"empty-name", error, "an empty name", "Nobody finds the record.", OnRecord{emptyName}},
    {"unknown-maker", note, "no maker, or one called \"Unknown\"", "Nobody can be asked.",
     OnRecord{unknownMaker}},

    // All records.
    {"duplicates", warning,
     "a spectrum that another pane of another name has, too, within 0.0001 everywhere",
     "One pane is there twice, or has the curve of another.", OnSource{duplicates}},
    {"same-name", warning, "a name that is there twice in a group",
     "Programs find the first of them only.", OnSource{sameNames}},
    {"similar-makers", warning,
     "makers whose names differ by case, blanks, accents or one letter of a long word",
     "One maker under two names.", OnSource{similarMakers}},
    {"similar-groups", warning, "the same of groups", "One group under two names.",
     OnSource{similarGroups}},
    {"outliers", note,
     "a thickness or a transmittance far from those of the group: ten times as far as half of "
     "them, "
     "and three times as much or a third for a thickness",
     "The record is in the wrong group, or wrong.", OnSource{outliers}},
    {"unused", note, "groups, makers and types of frames that no record uses", "They can go.",
     OnSource{unusedNames}},
    {"orphans", warning, "rows of details whose record is gone",
     "Deleting a shading leaves them; a new record with that key would get them.",
     OnSource{orphans}},
    {"dangling", error, "keys of groups, makers and types that point nowhere",
     "Queries that join the tables lose the record.", OnSource{danglingKeys}},
};

}  // namespace

std::span<const Rule> rules() {
  return kRules;
}

const Rule& ruleNamed(std::string_view name) {
  const auto found = std::ranges::find(kRules, name, &Rule::name);
  if (found != std::end(kRules)) return *found;
  std::vector<std::string_view> names;
  for (const Rule& rule : kRules) names.push_back(rule.name);
  throw Error(kInvalidCall, fmt::format("There is no rule \"{}\". The rules are: {}.", name,
                                        fmt::join(names, ", ")));
}

}  // namespace orv::commands::audit
