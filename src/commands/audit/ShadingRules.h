// Rules on one shading.
#pragma once

#include <vector>

#include "commands/audit/DataSet.h"
#include "commands/audit/Finding.h"

namespace orv::commands::audit {

// Of the rules that look for the same in panes.
std::vector<Fault> shadingStoredAgainstComputed(const AuditedShading& shading);
std::vector<Fault> shadingStoredOutside(const AuditedShading& shading);
std::vector<Fault> shadingNegativeAbsorptance(const AuditedShading& shading);
std::vector<Fault> shadingNotAFraction(const AuditedShading& shading);
std::vector<Fault> thicknessOfNoShading(const AuditedShading& shading);
std::vector<Fault> conductivityOfNoShading(const AuditedShading& shading);
std::vector<Fault> shadingMissingQuantities(const AuditedShading& shading);
std::vector<Fault> shadingContradictingFlags(const AuditedShading& shading);
std::vector<Fault> shadingNoAngle(const AuditedShading& shading);

// Of shadings only.
std::vector<Fault> impossibleOpenness(const AuditedShading& shading);
std::vector<Fault> impossibleSlats(const AuditedShading& shading);

}  // namespace orv::commands::audit
