// The columns of ORV databases for which the file of a record has no value: "Table.column".
#pragma once

#include <set>
#include <string>

#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"

namespace orv::commands {

/// Of a text file with these entries, as textfile::givenEntries() has them.
std::set<std::string> columnsNotGiven(const GlazingData& pane,
                                      const std::set<std::string>& entries);
std::set<std::string> columnsNotGiven(const ShadingDataClass& shading,
                                      const std::set<std::string>& entries);

}  // namespace orv::commands
