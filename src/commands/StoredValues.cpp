#include "commands/StoredValues.h"

#include "model/IntegratedColumns.h"

namespace orv::commands {

namespace {

/// Values that only some sources have; 0 where they do not.
struct RareValue {
  std::string_view name;
  Property<float> GlazingData::*member;
};

constexpr RareValue kRareValues[] = {
    {"Tf_dw", &GlazingData::Precalc_Tdw}, {"Tf_spf", &GlazingData::Precalc_TSPF},
    {"ef", &GlazingData::Precalc_ef},     {"eb", &GlazingData::Precalc_eb},
    {"X", &GlazingData::Precalc_TCIEX},   {"Y", &GlazingData::Precalc_TCIEY},
    {"Z", &GlazingData::Precalc_TCIEZ},
};

/// Nothing reflects nothing: 0 stands for a reflectance that the source does not know.
bool isKnown(const IntegratedColumn& column, float value) {
  const bool isReflectance = column.curve == Curve::Rf || column.curve == Curve::Rb;
  return !isReflectance || value != 0;
}

}  // namespace

std::vector<std::string_view> storedValueNames() {
  std::vector<std::string_view> names;
  for (const IntegratedColumn& column : kIntegratedColumns) names.emplace_back(column.name);
  for (const RareValue& value : kRareValues) names.push_back(value.name);
  return names;
}

std::optional<double> storedValue(const GlazingData& pane, std::string_view name) {
  if (!hasIntegratedData(pane) || lacksIntegratedValues(pane)) return std::nullopt;
  for (const IntegratedColumn& column : kIntegratedColumns) {
    const float value = (pane.*column.pane)();
    if (column.name == name) return isKnown(column, value) ? std::optional(value) : std::nullopt;
  }
  for (const RareValue& rare : kRareValues) {
    const float value = (pane.*rare.member)();
    if (rare.name == name) return value != 0 ? std::optional(value) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace orv::commands
