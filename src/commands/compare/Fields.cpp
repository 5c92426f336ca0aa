#include "commands/compare/Fields.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "commands/ShadingFieldNames.h"
#include "database/ShadingColumns.h"
#include "errors/Error.h"
#include "model/IntegratedColumns.h"
#include "model/Text.h"

namespace orv::commands::compare {

namespace {

struct PaneField {
  Field field;
  Cell (*valueOf)(const GlazingData& pane);
};

template <auto member>
Cell plain(const GlazingData& pane) {
  return store::Value((pane.*member)());
}

/// As a copy stores it; one of the two is there.
Cell description(const GlazingData& pane) {
  return store::Value(pane.description().empty() ? "Appearance: " + pane.Appearance()
                                                 : pane.description());
}

/// Which panes hold in single precision.
Field single(const char* name, const char* column) {
  return {.name = name, .column = column, .likeness = {.inSingle = true}};
}

using P = GlazingData;

const std::vector<PaneField>& paneFields() {
  static const std::vector<PaneField> fields{
      {{"name", "name"}, plain<&P::filename>},
      {{"product name", "product_name"}, plain<&P::productname>},
      {{"supplier", "supplierID", Lookup::supplier},
       [](const P& pane) -> Cell { return store::Value(knownName(pane.supplier())); }},
      {{kGroupField, "groupID", Lookup::group}, [](const P&) { return Cell(); }},
      {single("thickness", "thickness"),
       [](const P& pane) -> Cell { return store::Value(pane.ConvertedThickness(kSI)); }},
      {single("conductivity", "conduction"),
       [](const P& pane) -> Cell { return store::Value(pane.ConvertedConductivity(kSI)); }},
      {single("infrared transmittance front", "transmission_IR_outdoor"), plain<&P::TfIR>},
      {single("infrared transmittance back", "transmission_IR_indoor"), plain<&P::TbiR>},
      {{"database emissivity front", "emission_IR_outdoor"}, plain<&P::ORV_Emissivity_front>},
      {{"database emissivity back", "emission_IR_indoor"}, plain<&P::ORV_Emissivity_back>},
      {{.name = "coating class", .column = "coatingcode", .hasCase = false},
       plain<&P::ORV_CoatingClass>},
      {{"acceptance", "acceptance"}, plain<&P::Acceptance>},
      {{"description", "info"}, description},
      {{"frozen", "freeze"}, plain<&P::ORV_Frozen>},
      {{"single layer", "single_layer"}, plain<&P::single_layer>},
      {{"spectral pane", "spectral_pane"}, plain<&P::spectral_pane>},
      {{kFilmField, "with_and_without_film"}, plain<&P::with_and_without_film>},
      {{"film on outdoor side", "film_outdoor_side"}, plain<&P::film_outdoor_side>},
      {{"data at 0, 30 and 60 degrees", "0_30_60"}, plain<&P::Use_0_30_60>},
      {{"use estimation", "use_estimation"}, plain<&P::use_estimation>},
      {{kColourRendering, "Ra"}, [](const P&) { return Cell(); }}};
  return fields;
}

std::vector<Field> fieldsOfPanes() {
  std::vector<Field> fields;
  for (const PaneField& each : paneFields()) fields.push_back(each.field);
  return fields;
}

std::vector<Field> fieldsOfFrames() {
  return {{"name", "name"},
          {"product name", "product_name"},
          {"supplier", "supplierID", Lookup::supplier},
          {"group", "groupID", Lookup::group},
          {"frame type", "FrameTypeID", Lookup::frameType, "material_type"},
          {"U-value", "u_value"},
          {"width", "width"},
          {"picture", "picture"},
          {"info", "Info"}};
}

std::vector<Field> fieldsOfShadings() {
  std::vector<Field> fields;
  for (const auto& column : database::shadingColumns()) {
    const auto* key = std::get_if<database::ShadingKey>(&column.member);
    if (key == nullptr) {
      fields.push_back({.name = distinctShadingFieldName(column.name),
                        .column = column.name,
                        .likeness = {.isCode = database::isShadingCode(column)}});
    } else if (*key == database::ShadingKey::group) {
      fields.push_back({"group", column.name, Lookup::group});
    } else {
      fields.push_back({"supplier", column.name, Lookup::supplier});
    }
  }
  return fields;
}

struct ShadingCell {
  const ShadingDataClass& shading;

  Cell operator()(database::ShadingKey key) const {
    if (key == database::ShadingKey::group) return {};
    return store::Value(knownName(shading.supplier()));
  }
  template <class T>
  Cell operator()(Property<T> ShadingDataClass::*member) const {
    return store::Value((shading.*member)());
  }
};

bool isCurveField(std::string_view name) {
  if (name == kWavelengths || name == kDirection || name == kSpectrum) return true;
  const auto isCurve = [&](RecordKind kind) {
    return std::ranges::find(curveNames(kind), name, &CurveName::name) != curveNames(kind).end();
  };
  return isCurve(RecordKind::panes) || isCurve(RecordKind::shadings);
}

bool isIntegratedField(std::string_view name) {
  return name == kIntegratedValues ||
         std::ranges::find(kIntegratedColumns, name, &IntegratedColumn::title) !=
             kIntegratedColumns.end();
}

std::vector<std::string> allNames() {
  std::vector<std::string> names;
  const auto add = [&](std::string_view name) {
    if (std::ranges::find(names, name) == names.end()) names.emplace_back(name);
  };
  for (const RecordKind kind : {RecordKind::panes, RecordKind::frames, RecordKind::shadings}) {
    for (const Field& field : fieldsOf(kind)) add(field.name);
  }
  add(kIntegratedValues);
  for (const IntegratedColumn& value : kIntegratedColumns) add(value.title);
  add(kSpectrum);
  for (const RecordKind kind : {RecordKind::panes, RecordKind::shadings}) {
    for (const CurveName& curve : curveNames(kind)) add(curve.name);
  }
  add(kWavelengths);
  add(kDirection);
  return names;
}

/// Blanks, underlines and case do not matter, as in an edit.
std::string plainName(std::string_view name) {
  std::string plain = lowerCase(name);
  std::erase_if(plain, [](char c) { return c == ' ' || c == '_'; });
  return plain;
}

std::optional<std::string> spelled(const std::string& name) {
  const auto known = allNames();
  const auto found = std::ranges::find_if(
      known, [&](const auto& each) { return plainName(each) == plainName(name); });
  return found == known.end() ? std::nullopt : std::optional(*found);
}

/// The names as they are spelled here. They come parted at their commas, of which a name may have
/// some itself.
std::vector<std::string> spelled(const std::vector<std::string>& names) {
  std::vector<std::string> result;
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::string joined = names[i];
    auto name = spelled(joined);
    std::size_t end = i;
    while (!name && ++end < names.size()) name = spelled(joined += "," + names[end]);
    if (!name) {
      throw Error(kInvalidCall, fmt::format("There is no field \"{}\". There are: {}.",
                                            trimmed(names[i]), fmt::join(allNames(), "; ")));
    }
    result.push_back(*name);
    i = end;
  }
  return result;
}

bool names(const std::vector<std::string>& list, std::string_view name) {
  const auto has = [&](std::string_view each) {
    return std::ranges::find(list, each) != list.end();
  };
  return has(name) || (isCurveField(name) && has(kSpectrum)) ||
         (isIntegratedField(name) && has(kIntegratedValues));
}

}  // namespace

const std::vector<Field>& fieldsOf(RecordKind kind) {
  static const auto panes = fieldsOfPanes();
  static const auto frames = fieldsOfFrames();
  static const auto shadings = fieldsOfShadings();
  return kind == RecordKind::panes ? panes : kind == RecordKind::frames ? frames : shadings;
}

std::size_t positionOf(RecordKind kind, std::string_view column) {
  const auto found = std::ranges::find(fieldsOf(kind), column, &Field::column);
  return static_cast<std::size_t>(found - fieldsOf(kind).begin());
}

std::vector<Cell> cellsOf(const GlazingData& pane, const std::set<std::string>& missing) {
  std::vector<Cell> cells;
  for (const PaneField& each : paneFields()) {
    const bool isGiven = !missing.contains("Pane." + each.field.column);
    cells.push_back(isGiven ? each.valueOf(pane) : Cell());
  }
  return cells;
}

std::vector<Cell> cellsOf(const ShadingDataClass& shading, const std::set<std::string>& missing) {
  std::vector<Cell> cells;
  for (const auto& column : database::shadingColumns()) {
    const bool isGiven = !missing.contains(std::string("Shading.") + column.name);
    cells.push_back(isGiven ? std::visit(ShadingCell{shading}, column.member) : Cell());
  }
  return cells;
}

const std::vector<CurveName>& curveNames(RecordKind kind) {
  static const std::vector<CurveName> panes{{"T", "transmission_outdoor"},
                                            {"Rf", "reflection_outdoor"},
                                            {"Rb", "reflection_indoor"},
                                            {"T of the substrate", "transmission_sub"},
                                            {kSubstrateReflectance, "reflection_sub"}};
  static const std::vector<CurveName> shadings = [] {
    std::vector<CurveName> curves;
    for (const auto& column : kShadingSpectralColumns) curves.push_back({column.name, column.name});
    curves.erase(curves.begin());  // the wavelength
    return curves;
  }();
  static const std::vector<CurveName> none;
  return kind == RecordKind::panes ? panes : kind == RecordKind::shadings ? shadings : none;
}

FieldChoice::FieldChoice(const std::vector<std::string>& only,
                         const std::vector<std::string>& ignored)
    : only_(spelled(only)), ignored_(spelled(ignored)) {
  const auto isIgnored = [&](const auto& name) { return names(ignored_, name); };
  if (only_.empty() || !std::ranges::all_of(only_, isIgnored)) return;
  throw Error(kInvalidCall, "No field is left to compare: each one that is named is ignored, too.");
}

bool FieldChoice::has(std::string_view name) const {
  return (only_.empty() || names(only_, name)) && !names(ignored_, name);
}

bool FieldChoice::hasAnyIntegrated() const {
  return has(kIntegratedValues) ||
         std::ranges::any_of(kIntegratedColumns, [&](const auto& each) { return has(each.title); });
}

bool FieldChoice::hasAnyCurve(RecordKind kind) const {
  const auto& curves = curveNames(kind);
  return has(kSpectrum) || has(kWavelengths) || has(kDirection) ||
         std::ranges::any_of(curves, [&](const auto& each) { return has(each.name); });
}

std::string knownName(std::string name) {
  return name.empty() ? std::string(kUnknown) : std::move(name);
}

}  // namespace orv::commands::compare
