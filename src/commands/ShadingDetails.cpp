#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <utility>

#include "commands/CellText.h"
#include "commands/NumberText.h"
#include "commands/RecordDetails.h"
#include "commands/ShadingFieldNames.h"
#include "database/ShadingColumns.h"
#include "model/IntegratedColumns.h"
#include "model/ShadingTypes.h"

namespace orv::commands {

namespace {

using database::ShadingColumn;
using database::ShadingKey;

/// The sections in the order in which they are shown.
constexpr const char* kSheet = "Shading";
constexpr const char* kSlats = "Slats";
constexpr const char* kSurface = "Surface of the slats";
constexpr const char* kSurfaceBeam = "Surface of the slats, beam";
constexpr std::array kSections{kSheet, kSlats, kSurface, kSurfaceBeam};

/// What the words of columns' names stand for; nothing for those that the section says.
constexpr std::pair<std::string_view, std::string_view> kWords[] = {
    {"Sol", "solar"},
    {"Vis", "visible"},
    {"Uv", "ultraviolet"},
    {"UV", "ultraviolet"},
    {"IR", "infrared"},
    {"refl", "reflectance"},
    {"transm", "transmittance"},
    {"transmission", "transmittance"},
    {"reflection", "reflectance"},
    {"emission", "emissivity"},
    {"visual", "visible"},
    {"transmissivity", "transmittance"},
    {"outd", "outdoor"},
    {"ind", "indoor"},
    {"BB", ""},
    {"conduction", "conductivity"},
    {"homogenious", "homogeneous"},
    {"productname", "product name"},
    {"typeID", "type"},
    {"groupnameID", "group"},
    {"supplierID", "supplier"},
    {"dataID", "data id"},
    {"freeze", "frozen"},
};

std::string_view readableWord(std::string_view word) {
  for (const auto& [written, meant] : kWords) {
    if (word == written) return meant;
  }
  return word;
}

}  // namespace

const char* shadingUnit(Property<double> ShadingDataClass::*member) {
  using S = ShadingDataClass;
  if (member == &S::conduction) return "W/(m·K)";
  if (member == &S::angle) return "°";
  for (const auto length : {&S::thickness, &S::window_slat_distance, &S::slat_curvature,
                            &S::slat_length, &S::slat_distance}) {
    if (member == length) return "mm";
  }
  return "";
}

std::string_view shadingSection(std::string_view column) {
  if (column.find("_slat_surf") != std::string_view::npos) {
    return column.ends_with("_BB") ? kSurfaceBeam : kSurface;
  }
  const bool isOfSlats = column.find("slat_") != std::string_view::npos || column == "angle";
  return isOfSlats ? kSlats : kSheet;
}

std::string shadingFieldName(std::string column) {
  constexpr std::string_view kSurfaceWords = "_slat_surf";
  if (const auto at = column.find(kSurfaceWords); at != std::string::npos) {
    column.erase(at, kSurfaceWords.size());
  }
  std::string name;
  for (std::size_t start = 0; start < column.size();) {
    const std::size_t end = std::min(column.find('_', start), column.size());
    const auto word = readableWord(std::string_view(column).substr(start, end - start));
    if (!name.empty() && !word.empty()) name += ' ';
    name += word;
    start = end + 1;
  }
  return name;
}

namespace {

DetailField whole(const std::string& section, const std::string& name, std::int64_t value) {
  return {section, name, fmt::format("{}", value), "", value};
}

/// One field for a column, under its name in words.
struct ColumnField {
  const ShadingDataClass& shading;
  std::string section;
  std::string name;

  DetailField operator()(ShadingKey key) const {
    return text(key == ShadingKey::group ? shading.group() : shading.supplier());
  }
  DetailField operator()(Property<double> ShadingDataClass::*member) const {
    const double value = (shading.*member)();
    return {section, name, numberText(value), shadingUnit(member), value};
  }
  DetailField operator()(Property<bool> ShadingDataClass::*member) const {
    const bool value = (shading.*member)();
    return {section, name, value ? "yes" : "no", "", value};
  }
  DetailField operator()(Property<std::int32_t> ShadingDataClass::*member) const {
    DetailField field = whole(section, name, (shading.*member)());
    if (member == &ShadingDataClass::typeID) {
      field.value = codeText(kShadingTypeNames, shading.typeID());
    }
    return field;
  }
  DetailField operator()(Property<std::string> ShadingDataClass::*member) const {
    return text((shading.*member)());
  }
  DetailField text(const std::string& value) const { return {section, name, value, "", value}; }
};

}  // namespace

std::string distinctShadingFieldName(const std::string& column) {
  static const std::map<std::string, int> kColumnsOfName = [] {
    std::map<std::string, int> count;
    for (const ShadingColumn& each : database::shadingColumns())
      ++count[shadingFieldName(each.name)];
    return count;
  }();
  const std::string name = shadingFieldName(column);
  return kColumnsOfName.at(name) == 1 ? name : fmt::format("{}: {}", shadingSection(column), name);
}

std::vector<DetailField> shadingDetails(const ShadingDataClass& shading) {
  std::vector<DetailField> fields;
  fields.push_back(whole(kSheet, "id", shading.id()));
  for (const char* section : kSections) {
    for (const ShadingColumn& column : database::shadingColumns()) {
      if (shadingSection(column.name) != section) continue;
      fields.push_back(
          std::visit(ColumnField{shading, section, shadingFieldName(column.name)}, column.member));
    }
  }
  for (const ShadingIntegratedData& row : shading.integrated()) {
    const std::string at = fmt::format(" at {}°", row.angle);
    for (const IntegratedColumn& column : kIntegratedColumns) {
      const double value = row.*column.shading;
      fields.push_back({"Integrated values", column.column + at, numberText(value), "", value});
    }
  }
  const auto points = static_cast<std::int64_t>(shading.spectrum().size());
  fields.push_back(whole("Spectrum", "spectral points", points));
  return fields;
}

}  // namespace orv::commands
