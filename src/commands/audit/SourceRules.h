// Rules on records of any kind, and on all records of a source together.
#pragma once

#include <vector>

#include "commands/audit/SourceFacts.h"

namespace orv::commands::audit {

// On one record.
std::vector<Fault> emptyName(const RecordFacts& record);
std::vector<Fault> unknownMaker(const RecordFacts& record);

// On all of them. None takes time by the square of their number.
std::vector<PlacedFault> duplicates(const SourceFacts& source);
std::vector<PlacedFault> sameNames(const SourceFacts& source);
std::vector<PlacedFault> similarMakers(const SourceFacts& source);
std::vector<PlacedFault> similarGroups(const SourceFacts& source);
std::vector<PlacedFault> outliers(const SourceFacts& source);

// On the tables of an ORV database; nothing in other sources.
std::vector<PlacedFault> unusedNames(const SourceFacts& source);
std::vector<PlacedFault> orphans(const SourceFacts& source);
std::vector<PlacedFault> danglingKeys(const SourceFacts& source);

/// The points of a pane of a database that are below 0, which its reader refuses. Raises what the
/// store raises.
std::vector<Fault> negativePoints(const sources::datasource& node, const std::string& identifier);

}  // namespace orv::commands::audit
