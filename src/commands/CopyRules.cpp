#include "commands/CopyRules.h"

#include <algorithm>
#include <map>

#include "database/OrvSchema.h"
#include "model/IntegratedColumns.h"
#include "model/Text.h"

namespace orv::commands {

namespace DataType = sources::DataType;

namespace {

bool isKnownText(const std::string& text) {
  return !text.empty() && text != kUnknown && text != kNotApplicable;
}

/// Panes of the IGDB have their type in their description.
bool tellsItsType(const GlazingData& pane) {
  const auto word = nameOf(kGlazingTypeNames, pane.GlazingType());
  return word && equalIgnoringCase(pane.description().substr(0, word->size()), *word);
}

bool isKnownSide(std::int32_t side) {
  return side != kSideNotSet && side != kUnknownSide;
}

/// What a record may hold that is not brought. Whether it does is told of those that are read.
template <class Record>
struct Unbrought {
  const char* name;
  Fate fate;
  bool (*isThere)(const Record&) = nullptr;
};

template <auto member>
bool hasText(const auto& record) {
  return isKnownText((record.*member)());
}

using P = GlazingData;
using F = FrameDataClass;
using S = ShadingDataClass;

constexpr Unbrought<P> kOfPanes[] = {
    {kGroupField, Fate::chosen},
    {kColourRendering, Fate::stays},
    {kSubstrateReflectance, Fate::stays},
    {kDirectionField, Fate::stays},
    {"appearance", Fate::lost,
     [](const P& pane) { return !pane.Appearance().empty() && !pane.description().empty(); }},
    {"type", Fate::lost,
     [](const P& pane) { return pane.GlazingType() != kUnknownType && !tellsItsType(pane); }},
    {"material", Fate::lost, hasText<&P::material>},
    {"coating name", Fate::lost, hasText<&P::CoatingName>},
    {"coated side", Fate::lost, [](const P& pane) { return isKnownSide(pane.CoatedSide()); }},
    {"coating file", Fate::lost, hasText<&P::CoatingFilename>},
    {"substrate file", Fate::lost, hasText<&P::SubstrateFilename>},
    {"film file", Fate::lost, hasText<&P::FilmFilename>},
    {"laminate", Fate::lost,
     [](const P& pane) {
       return isKnownText(pane.LaminateFilename()) || isKnownText(pane.LaminateMaterial());
     }},
    {"layers", Fate::lost, [](const P& pane) { return pane.StructureCount() > 0; }},
    {"NFRC id", Fate::lost, [](const P& pane) { return pane.NFRC_id() > 0; }},
    {"IGDB checksum", Fate::lost, [](const P& pane) { return pane.IGDBChecksum() != 0; }},
    {"date of the IGDB checksum", Fate::lost,
     [](const P& pane) { return pane.IGDBChecksumDate().has_value(); }},
    {"sources of the emissivities", Fate::lost,
     [](const P& pane) {
       return pane.ef_source() != kUnknownSource && pane.ef_source() != kTextFileSource;
     }},
    {"uses", Fate::lost, [](const P& pane) { return pane.UsesCount() > 0; }},
    {"availability", Fate::lost, [](const P& pane) { return pane.AvailabilityCount() > 0; }},
};

constexpr Unbrought<F> kOfFrames[] = {
    {kGroupField, Fate::chosen},
    {"product name", Fate::stays, hasText<&F::productname>},
};

constexpr Unbrought<S> kOfShadings[] = {
    {kGroupField, Fate::chosen},
    {"material", Fate::lost, hasText<&S::material>},
    {"coated side", Fate::lost, [](const S& shading) { return isKnownSide(shading.CoatedSide()); }},
    {"position", Fate::lost, hasText<&S::position>},
};

template <class Record, std::size_t count>
std::vector<std::string> lossesAmong(const Unbrought<Record> (&table)[count],
                                     const Record& record) {
  std::vector<std::string> names;
  for (const auto& each : table) {
    if (each.isThere && each.isThere(record)) names.emplace_back(each.name);
  }
  return names;
}

/// Databases of version 2.0.1 have the text itself in place of a key.
bool isGivenAsText(const std::string& table, const std::string& column) {
  return table == "Frame" && column == "FrameTypeID";
}

}  // namespace

std::vector<CopyRule> copyRules() {
  std::vector<CopyRule> rules;
  const auto add = [&](RecordKind kind, const auto& table) {
    for (const auto& each : table) rules.push_back({kind, each.name, each.fate});
  };
  add(RecordKind::panes, kOfPanes);
  add(RecordKind::frames, kOfFrames);
  add(RecordKind::shadings, kOfShadings);
  return rules;
}

Fate fateOf(RecordKind kind, std::string_view field) {
  static const auto rules = copyRules();
  const auto found = std::ranges::find_if(
      rules, [&](const CopyRule& rule) { return rule.kind == kind && rule.name == field; });
  return found == rules.end() ? Fate::brought : found->fate;
}

std::vector<std::string> lossesOf(const GlazingData& pane) {
  return lossesAmong(kOfPanes, pane);
}

std::vector<std::string> lossesOf(const FrameDataClass& frame) {
  return lossesAmong(kOfFrames, frame);
}

std::vector<std::string> lossesOf(const ShadingDataClass& shading) {
  return lossesAmong(kOfShadings, shading);
}

std::set<std::string> columnsNotGiven(const sources::datasource& recordSet) {
  std::set<std::string> missing;
  const auto& connection = recordSet.ADOConnection();
  if (!connection || recordSet.DataType() == DataType::optics5Panes) return missing;
  const auto tables = connection->tableNames();
  for (const store::TableInfo& design : database::orvTables()) {
    const auto table = std::ranges::find_if(
        tables, [&](const std::string& name) { return equalIgnoringCase(name, design.name); });
    if (table == tables.end()) {
      missing.insert(design.name);
      continue;
    }
    const auto there = connection->table(*table).columns;
    for (const store::ColumnInfo& column : design.columns) {
      const bool isThere = std::ranges::any_of(there, [&](const store::ColumnInfo& each) {
        return equalIgnoringCase(each.name, column.name);
      });
      const bool isGiven = isThere || isGivenAsText(design.name, column.name);
      if (!isGiven) missing.insert(design.name + "." + column.name);
    }
  }
  // Which the retrieval does not read.
  missing.insert("Pane_spectral_data.reflection_sub");
  return missing;
}

std::set<std::string> columnsNotGiven(const GlazingData& pane) {
  std::set<std::string> missing;
  if (pane.ORV_CoatingClass().empty()) missing.insert("Pane.coatingcode");
  if (pane.Acceptance().empty()) missing.insert("Pane.acceptance");
  if (pane.description().empty() && pane.Appearance().empty()) missing.insert("Pane.info");
  return missing;
}

std::set<std::string> valuesNotGiven(const GlazingData& pane) {
  std::set<std::string> missing;
  for (const IntegratedColumn& value : kIntegratedColumns) {
    if (!hasIntegratedData(pane) || (pane.*value.pane)() == 0) missing.insert(value.column);
  }
  return missing;
}

}  // namespace orv::commands
