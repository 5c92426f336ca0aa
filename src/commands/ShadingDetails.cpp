#include <fmt/format.h>

#include "commands/RecordDetails.h"
#include "database/ShadingColumns.h"

namespace orv::commands {

namespace {

using database::ShadingColumn;
using database::ShadingKey;

/// The unit of a property; empty for a text, a flag, a fraction and a code.
const char* unitOf(Property<double> ShadingDataClass::*member) {
  using S = ShadingDataClass;
  if (member == &S::conduction) return "W/(m·K)";
  if (member == &S::angle) return "°";
  for (const auto length : {&S::thickness, &S::window_slat_distance, &S::slat_curvature,
                            &S::slat_length, &S::slat_distance}) {
    if (member == length) return "mm";
  }
  return "";
}

/// One field for a column, under the column's name.
struct ColumnField {
  const ShadingDataClass& shading;
  std::string name;

  DetailField operator()(ShadingKey key) const {
    return key == ShadingKey::group ? DetailField{"group", shading.group(), ""}
                                    : DetailField{"supplier", shading.supplier(), ""};
  }
  DetailField operator()(Property<double> ShadingDataClass::*member) const {
    return {name, fmt::format("{}", (shading.*member)()), unitOf(member)};
  }
  DetailField operator()(Property<bool> ShadingDataClass::*member) const {
    return {name, (shading.*member)() ? "yes" : "no", ""};
  }
  DetailField operator()(Property<std::int32_t> ShadingDataClass::*member) const {
    return {name, fmt::format("{}", (shading.*member)()), ""};
  }
  DetailField operator()(Property<std::string> ShadingDataClass::*member) const {
    return {name, (shading.*member)(), ""};
  }
};

}  // namespace

std::vector<DetailField> shadingDetails(const ShadingDataClass& shading) {
  std::vector<DetailField> fields;
  fields.push_back({"id", fmt::format("{}", shading.id()), ""});
  for (const ShadingColumn& column : database::shadingColumns()) {
    fields.push_back(std::visit(ColumnField{shading, column.name}, column.member));
  }
  for (const ShadingIntegratedData& row : shading.integrated()) {
    const std::string at = fmt::format(" at {}°", row.angle);
    for (const auto& column : database::shadingIntegratedColumns().subspan(1)) {
      fields.push_back({column.name + at, fmt::format("{}", row.*column.member), ""});
    }
  }
  fields.push_back({"spectral points", fmt::format("{}", shading.spectrum().size()), ""});
  return fields;
}

}  // namespace orv::commands
