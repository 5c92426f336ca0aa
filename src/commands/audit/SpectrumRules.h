// Rules on one spectrum.
#pragma once

#include <vector>

#include "commands/audit/DataSet.h"
#include "commands/audit/Finding.h"

namespace orv::commands::audit {

// Each looks at a data set that has a spectrum. All but the first one are asked only where its
// units are right.

std::vector<Fault> mistakenUnits(const DataSet& set);

// Values.
std::vector<Fault> outsideOfFractions(const DataSet& set);
std::vector<Fault> nearlyFractions(const DataSet& set);
std::vector<Fault> gainedEnergy(const DataSet& set);
std::vector<Fault> risingBehindMetal(const DataSet& set);

// The shape of curves.
std::vector<Fault> jumps(const DataSet& set);
std::vector<Fault> detectorSteps(const DataSet& set);
std::vector<Fault> constantStretches(const DataSet& set);

// Wavelengths.
std::vector<Fault> gaps(const DataSet& set);
std::vector<Fault> coarseSteps(const DataSet& set);
std::vector<Fault> doubledWavelengths(const DataSet& set);
std::vector<Fault> unorderedWavelengths(const DataSet& set);
std::vector<Fault> tooShort(const DataSet& set);

}  // namespace orv::commands::audit
