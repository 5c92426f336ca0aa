// Rules on the quantities, names, flags and angles of a pane.
#include "commands/audit/RecordRules.h"

#include <algorithm>
#include <set>

#include "commands/audit/Curves.h"
#include "commands/audit/Quantity.h"
#include "model/IntegratedColumns.h"

namespace orv::commands::audit {

namespace {

bool isFoil(const GlazingData& pane) {
  return pane.GlazingType() == kFilm || pane.GlazingType() == kInterlayer;
}

bool contains(const std::vector<std::int16_t>& angles, std::int16_t angle) {
  return std::ranges::find(angles, angle) != angles.end();
}

Fault angleFault(std::int16_t angle, const std::string& message) {
  return {.field = "angle",
          .value = std::to_string(angle),
          .message = fmt::format("At {} degrees {}", angle, message),
          .angle = angle};
}

}  // namespace

std::vector<Fault> thicknessOfNoGlass(const AuditedPane& pane) {
  constexpr Bounds kOfFoil{0.01F, 10};
  constexpr Bounds kOfGlass{0.3, 100};
  constexpr Bounds kOfAnything{0.01F, 100};  // as files give them
  const GlazingData& record = pane.record();
  const Bounds& bounds = isFoil(record)                         ? kOfFoil
                         : record.GlazingType() == kUnknownType ? kOfAnything
                                                                : kOfGlass;
  return outside("thickness", record.ConvertedThickness(kSI), bounds, "mm", "glass");
}

std::vector<Fault> conductivityOfNoGlass(const AuditedPane& pane) {
  constexpr Bounds kOfGlassAndPlastics{0.1, 2};
  return outside("conductivity", pane.record().ConvertedConductivity(kSI), kOfGlassAndPlastics,
                 "W/(m·K)", "glass");
}

std::vector<Fault> missingQuantities(const AuditedPane& pane) {
  const GlazingData& record = pane.record();
  const auto surfaces = optics::surfacesOf(record);
  std::vector<Fault> faults;
  const auto require = [&](bool isThere, const char* field) {
    if (isThere) return;
    faults.push_back({.field = field, .message = fmt::format("There is no {}", field)});
  };
  require(record.Thickness() > 0, "thickness");
  require(record.Conductivity() > 0, "conductivity");
  const auto isKnown = [&](const optics::Surface& surface, double stored, const char* name) {
    const auto& integrations = pane.sets.front().integrations;
    const bool isWrong = stored < 0;  // which another rule tells
    return surface.emissivity || isWrong || (!integrations.empty() && integrations.front()[name]);
  };
  require(isKnown(surfaces.front, record.ORV_Emissivity_front(), "ef"), "emissivity_front");
  require(isKnown(surfaces.back, record.ORV_Emissivity_back(), "eb"), "emissivity_back");
  return faults;
}

std::vector<Fault> missingValues(const AuditedPane& pane) {
  std::vector<Fault> faults;
  for (const DataSet& set : pane.sets) {
    const bool hasRow = hasIntegratedData(*set.pane);
    if (!pane.storesValues || !hasRow || !lacksIntegratedValues(*set.pane)) continue;
    if (set.integrations.empty() || !set.integrations.front()["Tf_vis"]) continue;
    faults.push_back({.field = "Tf_vis",
                      .value = "0",
                      .expected = shortNumber(*set.integrations.front()["Tf_vis"]),
                      .message = "All integrated values are 0, though there is a spectrum",
                      .angle = set.pane->ORV_Angle()});
  }
  return faults;
}

/// The reader leaves spectra alone of panes that are said to have none.
std::vector<Fault> contradictingFlag(const AuditedPane& pane) {
  if (!pane.isOfOrv3) return {};
  const bool isSpectral = pane.record().spectral_pane();
  if (isSpectral == !pane.spectralAngles.empty()) return {};
  return {{.field = "spectral_pane",
           .value = isSpectral ? "True" : "False",
           .expected = isSpectral ? "False" : "True",
           .message = isSpectral ? "The pane is said to be spectral, but it has no spectrum"
                                 : "The pane is said not to be spectral, but it has a spectrum"}};
}

std::vector<Fault> halfAngles(const AuditedPane& pane) {
  std::vector<Fault> faults;
  std::set<std::int16_t> seen;
  for (const std::int16_t angle : pane.integratedAngles) {
    if (!seen.insert(angle).second) {
      faults.push_back(angleFault(angle, "there are several rows of integrated values"));
    } else if (!pane.spectralAngles.empty() && !contains(pane.spectralAngles, angle)) {
      faults.push_back(angleFault(angle, "there are integrated values, but no spectrum"));
    }
  }
  for (const std::int16_t angle : pane.spectralAngles) {
    if (contains(pane.integratedAngles, angle)) continue;
    faults.push_back(angleFault(angle, "there is a spectrum, but no row of integrated values"));
  }
  return faults;
}

std::vector<Fault> mixedAngles(const AuditedPane& pane) {
  const auto isMixed = [](const DataSet& set) { return set.mixesAngles; };
  if (std::ranges::none_of(pane.sets, isMixed)) return {};
  return {{.field = "spectrum",
           .value = fmt::format("{} angles", pane.sets.size()),
           .message =
               "The rows of the spectrum belong to several angles, and the database does not "
               "tell to which"}};
}

std::vector<Fault> noAngle(const AuditedPane& pane) {
  constexpr std::int16_t kRightAngle = 90;
  std::vector<Fault> faults;
  for (const DataSet& set : pane.sets) {
    const std::int16_t angle = set.pane->ORV_Angle();
    if (angle >= 0 && angle <= kRightAngle) continue;
    auto fault = angleFault(angle, "nothing comes in");
    fault.expected = "0 to 90";
    faults.push_back(std::move(fault));
  }
  return faults;
}

}  // namespace orv::commands::audit
