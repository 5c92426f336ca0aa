#include "commands/compare/ModelRecords.h"

#include "commands/compare/Fields.h"
#include "database/Directions.h"
#include "model/IntegratedColumns.h"

namespace orv::commands::compare {

Record recordOf(const std::string& identifier, const GlazingData& pane,
                const std::set<std::string>& missing) {
  return {.identifiers = {identifier},
          .name = pane.filename(),
          .group = {},
          .fields = cellsOf(pane, missing)};
}

Record recordOf(const std::string& identifier, const ShadingDataClass& shading,
                const std::set<std::string>& missing) {
  Record record{.identifiers = {identifier},
                .name = shading.name(),
                .group = {},
                .fields = cellsOf(shading, missing)};
  record.integrated.emplace();
  for (const ShadingIntegratedData& at : shading.integrated()) {
    IntegratedRow& row = record.integrated->emplace_back();
    row.angle = at.angle;
    for (const auto& value : kIntegratedColumns) row.values.emplace_back(at.*value.shading);
  }
  return record;
}

std::optional<IntegratedRow> integratedOf(const GlazingData& pane) {
  const auto missing = valuesNotGiven(pane);
  if (missing.size() == kIntegratedColumns.size()) return std::nullopt;
  IntegratedRow row{.angle = static_cast<double>(pane.ORV_Angle()), .values = {}};
  for (const auto& value : kIntegratedColumns) {
    const bool isGiven = !missing.contains(value.column);
    row.values.push_back(isGiven ? Cell(store::Value((pane.*value.pane)())) : Cell());
  }
  return row;
}

void addCurves(const GlazingData& pane, std::size_t record, CurveRows& curves) {
  const auto& spectrum = pane.SpectralData();
  if (!spectrum) return;
  const SpectralData* substrate =
      pane.HasSubstrate() ? pane.SubstrateReference()->SpectralData().get() : nullptr;
  CurveKey key{.record = record, .angle = pane.ORV_Angle()};
  if (pane.ORV_Direction() != database::kAnyDirection) key.direction = pane.ORV_Direction();
  for (std::int32_t i = 0; i < spectrum->count(); ++i) {
    curves.begin(key, spectrum->ConvertedWl(i, kNanometers));
    std::size_t curve = 0;
    for (const float value : {spectrum->Tf(i), spectrum->Rf(i), spectrum->Rb(i),
                              substrate != nullptr ? substrate->Tf(i) : 0.0F,
                              substrate != nullptr ? substrate->Rf(i) : 0.0F}) {
      curves.add(curve++, value);
    }
  }
}

void addCurves(const ShadingDataClass& shading, std::size_t record, CurveRows& curves) {
  for (const ShadingSpectralPoint& point : shading.spectrum()) {
    curves.begin({.record = record}, point.wavelength);
    for (std::size_t i = 1; i < kShadingSpectralColumns.size(); ++i) {
      curves.add(i - 1, point.*kShadingSpectralColumns[i].member);
    }
  }
}

}  // namespace orv::commands::compare
