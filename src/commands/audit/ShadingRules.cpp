// Rules on the quantities, slats, flags and stored values of a shading.
#include "commands/audit/ShadingRules.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "commands/audit/Curves.h"
#include "commands/audit/Quantity.h"
#include "database/ShadingColumns.h"
#include "model/IntegratedColumns.h"

namespace orv::commands::audit {

namespace {

using Member = Property<double> ShadingDataClass::*;

constexpr Member kInfrared[] = {
    &ShadingDataClass::emission_IR_outdoor,       &ShadingDataClass::emission_IR_indoor,
    &ShadingDataClass::transmission_IR_outdoor,   &ShadingDataClass::transmission_IR_indoor,
    &ShadingDataClass::emissivity_slat_surf_outd, &ShadingDataClass::emissivity_slat_surf_ind,
    &ShadingDataClass::transmissivity_slat_surf};

/// The column of a quantity.
const char* fieldOf(Member member) {
  const auto columns = database::shadingColumns();
  return std::ranges::find(columns, database::ShadingMember(member),
                           &database::ShadingColumn::member)
      ->name;
}

/// What a surface throws back and lets through of a range, as scattered light and as a beam. It is
/// named by the first.
struct Surface {
  Member parts[4];
};

constexpr Surface kSurfaces[] = {
    {{&ShadingDataClass::Sol_refl_slat_surf_outd, &ShadingDataClass::Sol_transm_slat_surf,
      &ShadingDataClass::Sol_refl_slat_surf_outd_BB, &ShadingDataClass::Sol_transm_slat_surf_BB}},
    {{&ShadingDataClass::Sol_refl_slat_surf_ind, &ShadingDataClass::Sol_transm_slat_surf,
      &ShadingDataClass::Sol_refl_slat_surf_ind_BB, &ShadingDataClass::Sol_transm_slat_surf_BB}},
    {{&ShadingDataClass::Vis_refl_slat_surf_outd, &ShadingDataClass::Vis_transm_slat_surf,
      &ShadingDataClass::Vis_refl_slat_surf_outd_BB, &ShadingDataClass::Vis_transm_slat_surf_BB}},
    {{&ShadingDataClass::Vis_refl_slat_surf_ind, &ShadingDataClass::Vis_transm_slat_surf,
      &ShadingDataClass::Vis_refl_slat_surf_ind_BB, &ShadingDataClass::Vis_transm_slat_surf_BB}},
    {{&ShadingDataClass::Uv_refl_slat_surf_outd, &ShadingDataClass::Uv_transm_slat_surf,
      &ShadingDataClass::Uv_refl_slat_surf_outd_BB, &ShadingDataClass::Uv_transm_slat_surf_BB}},
    {{&ShadingDataClass::Uv_refl_slat_surf_ind, &ShadingDataClass::Uv_transm_slat_surf,
      &ShadingDataClass::Uv_refl_slat_surf_ind_BB, &ShadingDataClass::Uv_transm_slat_surf_BB}}};

/// T and R of one range and side, in the rows of integrated values.
struct Sum {
  const char* field;
  double ShadingIntegratedData::*T;
  double ShadingIntegratedData::*R;
};

constexpr Sum kSums[] = {{"Tf_sol + Rf_sol", &ShadingIntegratedData::transmission_solar_outdoor,
                          &ShadingIntegratedData::reflection_solar_outdoor},
                         {"Tb_sol + Rb_sol", &ShadingIntegratedData::transmission_solar_indoor,
                          &ShadingIntegratedData::reflection_solar_indoor},
                         {"Tf_vis + Rf_vis", &ShadingIntegratedData::transmission_visual_outdoor,
                          &ShadingIntegratedData::reflection_visual_outdoor},
                         {"Tb_vis + Rb_vis", &ShadingIntegratedData::transmission_visual_indoor,
                          &ShadingIntegratedData::reflection_visual_indoor},
                         {"Tf_uv + Rf_uv", &ShadingIntegratedData::transmission_UV_outdoor,
                          &ShadingIntegratedData::reflection_UV_outdoor},
                         {"Tb_uv + Rb_uv", &ShadingIntegratedData::transmission_UV_indoor,
                          &ShadingIntegratedData::reflection_UV_indoor}};

std::int16_t angleOf(const ShadingIntegratedData& row) {
  return static_cast<std::int16_t>(std::lround(std::clamp(row.angle, -999.0, 999.0)));
}

Fault sumFault(const char* field, double sum) {
  return {.field = field,
          .value = shortNumber(sum),
          .expected = "1 at most",
          .message = fmt::format("{}: what is stored adds up to {}", field, shortNumber(sum))};
}

bool hasSlats(const ShadingDataClass& shading) {
  return shading.slat_length() != 0 || shading.slat_distance() != 0;
}

}  // namespace

/// The spectrum of a blind is that of its slats, its stored values may be those of the whole.
std::vector<Fault> shadingStoredAgainstComputed(const AuditedShading& shading) {
  const auto& rows = shading.record->integrated();
  if (rows.size() != 1 || rows.front().angle != 0 || hasSlats(*shading.record)) return {};
  return storedAgainst(shading.data, [&](const IntegratedColumn& column) {
    const double value = rows.front().*column.shading;
    return value == 0 ? std::nullopt : std::optional(value);
  });
}

std::vector<Fault> shadingStoredOutside(const AuditedShading& shading) {
  std::vector<Fault> faults;
  for (const ShadingIntegratedData& row : shading.record->integrated()) {
    for (const IntegratedColumn& column : kIntegratedColumns) {
      addUnlessFraction(faults, column.name, row.*column.shading, angleOf(row));
    }
  }
  for (const Surface& surface : kSurfaces) {
    for (const Member part : surface.parts) {
      const auto before = faults.size();
      addUnlessFraction(faults, fieldOf(surface.parts[0]), (*shading.record.*part)(), {});
      if (faults.size() > before) break;
    }
  }
  return faults;
}

std::vector<Fault> shadingNegativeAbsorptance(const AuditedShading& shading) {
  std::vector<Fault> faults;
  for (const ShadingIntegratedData& row : shading.record->integrated()) {
    for (const Sum& each : kSums) {
      const double sum = row.*each.T + row.*each.R;
      if (sum <= 1 + kMeasuringError) continue;
      faults.push_back(sumFault(each.field, sum));
      faults.back().angle = angleOf(row);
    }
  }
  for (const Surface& surface : kSurfaces) {
    double sum = 0;
    for (const Member part : surface.parts) sum += (*shading.record.*part)();
    if (sum > 1 + kMeasuringError) faults.push_back(sumFault(fieldOf(surface.parts[0]), sum));
  }
  return faults;
}

/// What a side emits and lets through of heat is part of it, too.
std::vector<Fault> shadingNotAFraction(const AuditedShading& shading) {
  const ShadingDataClass& record = *shading.record;
  std::vector<Fault> faults;
  for (const Member member : kInfrared) {
    addUnlessFraction(faults, fieldOf(member), (record.*member)(), {});
  }
  if (!faults.empty()) return faults;
  const std::pair<const char*, double> sums[] = {
      {"emission_IR_outdoor", record.emission_IR_outdoor() + record.transmission_IR_outdoor()},
      {"emission_IR_indoor", record.emission_IR_indoor() + record.transmission_IR_indoor()}};
  for (const auto& [field, sum] : sums) {
    if (sum > 1 + kMeasuringError) faults.push_back(sumFault(field, sum));
  }
  return faults;
}

std::vector<Fault> thicknessOfNoShading(const AuditedShading& shading) {
  constexpr Bounds kFromFoilToShutter{0.01, 100};
  return outside("thickness", shading.record->thickness(), kFromFoilToShutter, "mm", "a shading");
}

std::vector<Fault> conductivityOfNoShading(const AuditedShading& shading) {
  constexpr Bounds kFromFoamToCopper{0.02, 430};
  return outside("conduction", shading.record->conduction(), kFromFoamToCopper, "W/(m·K)",
                 "a shading");
}

/// Version 2.0.1 keeps little of shadings, which is none of their faults.
std::vector<Fault> shadingMissingQuantities(const AuditedShading& shading) {
  if (shading.isOfOrv2) return {};
  const ShadingDataClass& record = *shading.record;
  std::vector<Fault> faults;
  const auto require = [&](double value, const char* field, const char* name) {
    if (value != 0) return;
    faults.push_back({.field = field, .message = fmt::format("There is no {}", name)});
  };
  require(record.thickness(), "thickness", "thickness");
  require(record.conduction(), "conduction", "conductivity");
  require(record.emission_IR_outdoor(), "emission_IR_outdoor", "emissivity outdoors");
  require(record.emission_IR_indoor(), "emission_IR_indoor", "emissivity indoors");
  return faults;
}

std::vector<Fault> shadingContradictingFlags(const AuditedShading& shading) {
  if (shading.isOfOrv2) return {};
  const ShadingDataClass& record = *shading.record;
  constexpr std::int32_t kLastType = 4;
  std::vector<Fault> faults;
  const auto tell = [&](const char* field, bool value, const char* message) {
    faults.push_back({.field = field,
                      .value = value ? "True" : "False",
                      .expected = value ? "False" : "True",
                      .message = message});
  };
  if (record.spectral() && record.spectrum().empty()) {
    tell("spectral", true, "The shading is said to be spectral, but it has no spectrum");
  } else if (!record.spectral() && !record.spectrum().empty()) {
    tell("spectral", false, "The shading is said not to be spectral, but it has a spectrum");
  }
  if (record.homogenious() && hasSlats(record)) {
    tell("homogenious", true, "The shading is said to be the same all over, but it has slats");
  }
  if (record.typeID() < 0 || record.typeID() > kLastType) {
    faults.push_back({.field = "typeID",
                      .value = std::to_string(record.typeID()),
                      .expected = "1 to 4",
                      .message = "There is no such type of shadings"});
  }
  return faults;
}

std::vector<Fault> shadingNoAngle(const AuditedShading& shading) {
  constexpr double kRightAngle = 90;
  std::vector<Fault> faults;
  for (const ShadingIntegratedData& row : shading.record->integrated()) {
    if (row.angle >= 0 && row.angle <= kRightAngle) continue;
    faults.push_back(
        {.field = "angle",
         .value = shortNumber(row.angle),
         .expected = "0 to 90",
         .message = fmt::format("At {} degrees nothing comes in", shortNumber(row.angle)),
         .angle = angleOf(row)});
  }
  return faults;
}

std::vector<Fault> impossibleOpenness(const AuditedShading& shading) {
  std::vector<Fault> faults;
  addUnlessFraction(faults, "permeability", shading.record->permeability(), {});
  return faults;
}

/// Lengths are millimetres.
std::vector<Fault> impossibleSlats(const AuditedShading& shading) {
  constexpr Bounds kWidth{3, 1000};
  constexpr Bounds kAngle{-90, 90};
  constexpr double kMostTimesWidth = 2;
  const ShadingDataClass& record = *shading.record;
  const double width = record.slat_length();
  const double distance = record.slat_distance();
  std::vector<Fault> faults;
  const auto tell = [&](bool isWrong, const char* field, double value, const std::string& message) {
    if (isWrong)
      faults.push_back({.field = field, .value = shortNumber(value), .message = message});
  };
  if (!hasSlats(record)) return faults;
  tell(width < kWidth.least || width > kWidth.most, "slat_length", width,
       fmt::format("Slats are not {} mm wide", shortNumber(width)));
  tell(distance <= 0, "slat_distance", distance, "Slats have a distance");
  tell(width > 0 && distance > kMostTimesWidth * width, "slat_distance", distance,
       fmt::format("Slats of {} mm, {} mm apart, cover nothing", shortNumber(width),
                   shortNumber(distance)));
  tell(distance > 0 && record.thickness() >= distance, "thickness", record.thickness(),
       "Slats are thinner than their distance");
  tell(record.slat_curvature() < 0 || record.slat_curvature() > width / 2, "slat_curvature",
       record.slat_curvature(), "The crown of a slat is no higher than half its width");
  tell(record.angle() < kAngle.least || record.angle() > kAngle.most, "angle", record.angle(),
       "Slats turn from -90 to 90 degrees");
  tell(record.window_slat_distance() < 0, "window_slat_distance", record.window_slat_distance(),
       "A distance is not negative");
  return faults;
}

}  // namespace orv::commands::audit
