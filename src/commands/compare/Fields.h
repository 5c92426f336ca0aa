// What is compared of records, by its names.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "commands/CopyRules.h"
#include "commands/RecordKind.h"
#include "commands/compare/Record.h"
#include "database/SameValues.h"
#include "model/GlazingData.h"
#include "model/ShadingDataClass.h"

namespace orv::commands::compare {

/// Names that stand in a table of their own, to which records have keys.
enum class Lookup { none, group, supplier, frameType };

struct Field {
  std::string name;    ///< as `orv show` has it
  std::string column;  ///< of ORV databases
  Lookup lookup = Lookup::none;
  std::string textColumn = {};  ///< where databases of version 2.0.1 have the text itself
  database::Likeness likeness = {};
  bool hasCase = true;
};

/// The fields of records of a kind, their keys left out. The first is the name.
const std::vector<Field>& fieldsOf(RecordKind kind);
/// The position of the field of a column. Raises nothing: there is such a field.
std::size_t positionOf(RecordKind kind, std::string_view column);
inline constexpr std::string_view kFilmColumn = "with_and_without_film";
/// The field of it, which of some sources their curves tell.
inline constexpr const char* kFilmField = "with and without film";

/// The fields of records that are read by themselves. Of the columns that such sources do not give,
/// "Table.column", nothing is known.
std::vector<Cell> cellsOf(const GlazingData& pane, const std::set<std::string>& missing);
std::vector<Cell> cellsOf(const ShadingDataClass& shading, const std::set<std::string>& missing);

struct CurveName {
  std::string_view name;
  const char* column;  ///< of ORV databases
};

/// The curves of panes, or of shadings; none of frames.
const std::vector<CurveName>& curveNames(RecordKind kind);

/// What is told where a record has integrated values, or a spectrum, and the other has not, and
/// where wavelengths or directions differ.
inline constexpr std::string_view kIntegratedValues = "integrated values";
inline constexpr std::string_view kSpectrum = "spectrum";
inline constexpr std::string_view kWavelengths = "wavelengths";
inline constexpr std::string_view kDirection = kDirectionField;

/// The fields that are asked for.
class FieldChoice {
 public:
  /// All of `only`, or all where that is empty, but for those of `ignored`. "spectrum" stands for
  /// its curves, wavelengths and directions, too, and "integrated values" for all of them. Raises
  /// kInvalidCall for a name that there is not.
  FieldChoice(const std::vector<std::string>& only, const std::vector<std::string>& ignored);

  bool has(std::string_view name) const;
  bool hasAnyIntegrated() const;
  bool hasAnyCurve(RecordKind kind) const;

 private:
  std::vector<std::string> only_;
  std::vector<std::string> ignored_;
};

/// What an empty name of a supplier, a group or a type stands for.
std::string knownName(std::string name);

}  // namespace orv::commands::compare
