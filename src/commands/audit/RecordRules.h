// Rules on one pane.
#pragma once

#include <vector>

#include "commands/audit/DataSet.h"
#include "commands/audit/Finding.h"

namespace orv::commands::audit {

// What is said of the values at an angle.
std::vector<Fault> storedAgainstComputed(const DataSet& set);
std::vector<Fault> storedOutside(const DataSet& set);
std::vector<Fault> negativeAbsorptance(const DataSet& set);
std::vector<Fault> emissivityAgainstInfrared(const DataSet& set);

// What is said once of a pane.
std::vector<Fault> notAFraction(const AuditedPane& pane);
std::vector<Fault> exchangedSides(const AuditedPane& pane);
std::vector<Fault> uncoatedLowEmissivity(const AuditedPane& pane);
std::vector<Fault> thicknessOfNoGlass(const AuditedPane& pane);
std::vector<Fault> conductivityOfNoGlass(const AuditedPane& pane);
std::vector<Fault> missingQuantities(const AuditedPane& pane);
std::vector<Fault> missingValues(const AuditedPane& pane);
std::vector<Fault> contradictingFlag(const AuditedPane& pane);
std::vector<Fault> halfAngles(const AuditedPane& pane);
std::vector<Fault> mixedAngles(const AuditedPane& pane);
std::vector<Fault> noAngle(const AuditedPane& pane);

}  // namespace orv::commands::audit
