#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>

#include "commands/audit/FrameRules.h"
#include "commands/audit/RecordRules.h"
#include "commands/audit/Rule.h"
#include "commands/audit/ShadingRules.h"
#include "commands/audit/SourceRules.h"
#include "commands/audit/SpectrumRules.h"
#include "errors/Error.h"

namespace orv::commands::audit {

namespace {

using enum Severity;

constexpr Rule kRules[] = {
    {kUnreadable, error, "records that cannot be read",
     "This program can neither show nor copy them.", OnReading{}},
    {kNotRead, note, "products of shadings",
     "Of products only panes are read; nothing is wrong with the others.", OnReading{}},

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
    {"jump", warning,
     "one point that leaves its curve, by 0.02 at least (0.05 at the first and the last), and "
     "comes "
     "back",
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
     "Stored values or spectrum are of another pane.",
     OnDataSet{storedAgainstComputed, shadingStoredAgainstComputed}},
    {"stored-range", error, "stored integrated values outside of 0 to 1", "They are fractions.",
     OnDataSet{storedOutside, shadingStoredOutside}},
    {"missing-values", warning,
     "a row of integrated values that is all 0, while there is a spectrum",
     "Programs that read the database take the pane for black.", OnData{missingValues}},
    {"absorptance", error, "stored transmittance and reflectance that add up to more than 1.01",
     "No pane absorbs less than nothing.",
     OnDataSet{negativeAbsorptance, shadingNegativeAbsorptance}},
    {"emissivity-infrared", warning,
     "an emissivity that is more than 0.03 from that of the spectrum beyond 5 µm",
     "One of the two is of another surface.", OnDataSet{emissivityAgainstInfrared}},
    {"emissivity", error,
     "emissivities and infrared transmittances outside of 0 to 1; of shadings, that the two of a "
     "side add up to more than 1.01",
     "They are fractions.", OnData{notAFraction, shadingNotAFraction}},
    {"exchanged", warning,
     "a coated side with the emissivity of glass, while the bare one has a low one",
     "Front and back are exchanged.", OnData{exchangedSides}},
    {"uncoated-low-e", warning, "a bare side with an emissivity below 0.7",
     "Only coatings emit so little.", OnData{uncoatedLowEmissivity}},
    {"thickness", warning,
     "a thickness outside of 0.3 to 100 mm (foils: 0.01 to 10 mm; of unknown type, and of "
     "shadings, 0.01 to 100 mm)",
     "An inch or a micron was taken for a millimetre.",
     OnData{thicknessOfNoGlass, thicknessOfNoShading}},
    {"conductivity", warning,
     "a conductivity outside of 0.1 to 2 W/(m·K); of shadings, of 0.02 to 430 W/(m·K)",
     "Neither glass nor plastic, or no foam nor metal, conducts so; another unit was meant.",
     OnData{conductivityOfNoGlass, conductivityOfNoShading}},
    {"openness", warning, "a permeability of a shading outside of 0 to 1",
     "It is the part that is open.", OnData{.shading = impossibleOpenness}},
    {"slats", warning,
     "slats that are not 3 to 1000 mm wide, that are further apart than twice their width or "
     "closer "
     "than their thickness, with a crown higher than half the width, or turned by more than 90 "
     "degrees",
     "Another unit of length was meant, or one length stands in the place of another.",
     OnData{.shading = impossibleSlats}},
    {"u-value", warning, "a U value of a frame outside of 0.3 to 15 W/(m²·K)",
     "No frame insulates so well or so badly.", OnData{.frame = uValueOfNoFrame}},
    {"width", warning, "a width of a frame outside of 0.005 to 0.5 m",
     "A millimetre or an inch was taken for a metre.", OnData{.frame = widthOfNoFrame}},
    {"missing-data", note,
     "no thickness, no conductivity, no emissivity; no U value and no width of a frame",
     "Heat transfer cannot be computed.",
     OnData{missingQuantities, shadingMissingQuantities, frameMissingQuantities}},
    {"flags", warning,
     "what is marked as spectral without a spectrum, and the reverse; shadings that are marked as "
     "a "
     "sheet and have slats, or of a type that is none of 1 to 4",
     "Programs look for a spectrum where the mark says so, and only there.",
     OnData{contradictingFlag, shadingContradictingFlags}},
    {"half-angles", warning,
     "an angle with integrated values but no spectrum, or the reverse, or with two rows",
     "Only half of the data is copied and found.", OnData{halfAngles}},
    {"mixed-angles", note,
     "a spectrum of several angles, of which version 2.0.1 does not say which row is of which",
     "No rule looks at such a spectrum.", OnData{mixedAngles}},
    {"angle", error, "an angle of incidence outside of 0 to 90 degrees", "Nothing comes in there.",
     OnData{noAngle, shadingNoAngle}},
    {"empty-name", error, "an empty name", "Nobody finds the record.", OnRecord{emptyName}},
    {"unknown-maker", note, "no maker, or one called \"Unknown\"", "Nobody can be asked.",
     OnRecord{unknownMaker}},

    // All records.
    {"duplicates", warning,
     "spectra that another pane of another name has, too, within 0.0001 everywhere",
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
