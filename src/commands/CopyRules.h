// What a copy into an ORV database does not bring: the table by which it is told, left out of
// comparisons, and left as it is where a record is replaced.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "commands/RecordKind.h"
#include "model/FrameDataClass.h"
#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"

namespace orv::commands {

inline constexpr const char* kGroupField = "group";
inline constexpr const char* kColourRendering = "Ra";
inline constexpr const char* kSubstrateReflectance = "R of the substrate";
inline constexpr const char* kDirectionField = "direction";

/// What becomes of something that a record may hold.
enum class Fate {
  brought,
  chosen,  ///< by whoever copies
  stays,   ///< there is a column; that of a replaced record stays as it is
  lost,    ///< there is no column
};

struct CopyRule {
  RecordKind kind;
  std::string name;
  Fate fate;
};

/// All that is not brought.
std::vector<CopyRule> copyRules();
/// What becomes of a field of a record of a database.
Fate fateOf(RecordKind kind, std::string_view field);

// Each gives the names of what the record holds and a copy loses.
std::vector<std::string> lossesOf(const GlazingData& pane);
std::vector<std::string> lossesOf(const FrameDataClass& frame);
std::vector<std::string> lossesOf(const ShadingDataClass& shading);

/// The columns that records of a database have no values for: "Table.column", or "Table" for all of
/// one. None of other sources.
std::set<std::string> columnsNotGiven(const sources::datasource& recordSet);
/// The same of a pane of other sources.
std::set<std::string> columnsNotGiven(const GlazingData& pane);
/// The columns of the integrated values that a pane of other sources does not give: 0 stands for
/// that.
std::set<std::string> valuesNotGiven(const GlazingData& pane);

}  // namespace orv::commands
