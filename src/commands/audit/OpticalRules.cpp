// Rules on the integrated values and the emissivities of a pane.
#include <algorithm>
#include <cmath>

#include "commands/StoredValues.h"
#include "commands/audit/Curves.h"
#include "commands/audit/Quantity.h"
#include "commands/audit/RecordRules.h"
#include "model/IntegratedColumns.h"

namespace orv::commands::audit {

namespace {

/// No bare glass emits less; 0.7 as files give it.
constexpr double kLeastOfGlass = 0.7F;
/// A coating for low emissivity emits no more.
constexpr double kMostOfCoating = 0.5;

std::optional<double> known(double stated) {
  return stated > 0 ? std::optional(stated) : std::nullopt;
}

struct Side {
  const char* name;
  const char* field;
  const char* computed;
  bool isBare;  ///< known to have no coating
  bool isCoated;
  std::optional<double> emissivity;
};

/// With the emissivities that are stated.
std::array<Side, 2> sidesOf(const GlazingData& pane) {
  const auto surfaces = optics::surfacesOf(pane);
  const auto side = [](const char* name, const char* field, const char* computed,
                       const optics::Surface& surface, std::optional<double> emissivity) {
    return Side{name,
                field,
                computed,
                surface.coating == optics::Coating::bare,
                surface.coating == optics::Coating::coated,
                emissivity};
  };
  return {
      side("front", "emissivity_front", "ef", surfaces.front, known(pane.ORV_Emissivity_front())),
      side("back", "emissivity_back", "eb", surfaces.back, known(pane.ORV_Emissivity_back()))};
}

/// Where no emissivity is stated, that of the spectrum.
std::array<Side, 2> knownSidesOf(const AuditedPane& pane) {
  auto sides = sidesOf(pane.record());
  const auto& integrations = pane.sets.front().integrations;
  if (integrations.empty()) return sides;
  for (Side& side : sides) {
    if (!side.emissivity) side.emissivity = integrations.front()[side.computed];
  }
  return sides;
}

/// The one coated side emits like bare glass, and the other like a coating.
bool isExchanged(const std::array<Side, 2>& sides) {
  const bool isOnFront = sides[0].isCoated && sides[1].isBare;
  const bool isOnBack = sides[1].isCoated && sides[0].isBare;
  if (!isOnFront && !isOnBack) return false;
  const Side& coated = sides[isOnFront ? 0 : 1];
  const Side& bare = sides[isOnFront ? 1 : 0];
  return coated.emissivity && bare.emissivity && *coated.emissivity >= kLeastOfGlass &&
         *bare.emissivity < kMostOfCoating;
}

}  // namespace

std::vector<Fault> storedAgainstComputed(const DataSet& set) {
  return storedAgainst(
      set, [&](const IntegratedColumn& column) { return storedValue(*set.pane, column.name); });
}

std::vector<Fault> storedOutside(const DataSet& set) {
  std::vector<Fault> faults;
  for (const IntegratedColumn& column : kIntegratedColumns) {
    const auto stored = storedValue(*set.pane, column.name);
    if (stored) addUnlessFraction(faults, column.name, *stored, {});
  }
  return faults;
}

std::vector<Fault> negativeAbsorptance(const DataSet& set) {
  struct Sum {
    const char* field;
    const char* range;
    const char* T;
    const char* R;
  };
  constexpr Sum kSums[] = {{"Tf_sol + Rf_sol", "solar", "Tf_sol", "Rf_sol"},
                           {"Tb_sol + Rb_sol", "solar", "Tb_sol", "Rb_sol"},
                           {"Tf_vis + Rf_vis", "visible", "Tf_vis", "Rf_vis"},
                           {"Tb_vis + Rb_vis", "visible", "Tb_vis", "Rb_vis"}};
  std::vector<Fault> faults;
  for (const Sum& each : kSums) {
    const auto T = storedValue(*set.pane, each.T);
    const auto R = storedValue(*set.pane, each.R);
    if (!T || !R || *T + *R <= 1 + kMeasuringError) continue;
    faults.push_back({.field = each.field,
                      .value = shortNumber(*T + *R),
                      .expected = "1 at most",
                      .message = fmt::format("The stored {} absorptance is {}", each.range,
                                             shortNumber(1 - *T - *R))});
  }
  return faults;
}

std::vector<Fault> emissivityAgainstInfrared(const DataSet& set) {
  constexpr double kApart = 0.03;
  std::vector<Fault> faults;
  for (const Side& side : sidesOf(*set.pane)) {
    if (!side.emissivity) continue;
    const auto computed = nearest(set, side.computed, *side.emissivity);
    if (!computed || std::abs(*computed - *side.emissivity) <= kApart) continue;
    faults.push_back(
        {.field = side.field,
         .value = shortNumber(*side.emissivity),
         .expected = shortNumber(*computed),
         .message = fmt::format("The emissivity of the {} is {}, but {} by the "
                                "spectrum beyond 5 µm",
                                side.name, shortNumber(*side.emissivity), shortNumber(*computed))});
  }
  return faults;
}

std::vector<Fault> notAFraction(const AuditedPane& pane) {
  const GlazingData& record = pane.record();
  std::vector<Fault> faults;
  addUnlessFraction(faults, "emissivity_front", record.ORV_Emissivity_front(), {});
  addUnlessFraction(faults, "emissivity_back", record.ORV_Emissivity_back(), {});
  addUnlessFraction(faults, "TfIR", record.TfIR(), {});
  addUnlessFraction(faults, "TbIR", record.TbiR(), {});
  return faults;
}

std::vector<Fault> exchangedSides(const AuditedPane& pane) {
  const auto sides = knownSidesOf(pane);
  if (!isExchanged(sides)) return {};
  const Side& coated = sides[sides[0].isCoated ? 0 : 1];
  const Side& bare = sides[sides[0].isCoated ? 1 : 0];
  return {{.field = coated.field,
           .value = shortNumber(*coated.emissivity),
           .expected = shortNumber(*bare.emissivity),
           .message = fmt::format("The coating is said to be on the {}, but it is the {} that has "
                                  "a low emissivity",
                                  coated.name, bare.name)}};
}

std::vector<Fault> uncoatedLowEmissivity(const AuditedPane& pane) {
  const auto sides = knownSidesOf(pane);
  if (isExchanged(sides)) return {};
  std::vector<Fault> faults;
  for (const Side& side : sides) {
    if (!side.isBare || !side.emissivity || *side.emissivity >= kLeastOfGlass) continue;
    faults.push_back({.field = side.field,
                      .value = shortNumber(*side.emissivity),
                      .expected = shortNumber(kLeastOfGlass) + " at least",
                      .message = fmt::format("The {} has no coating, but an emissivity of {}",
                                             side.name, shortNumber(*side.emissivity))});
  }
  return faults;
}

}  // namespace orv::commands::audit
