#include "commands/GivenColumns.h"

#include <algorithm>
#include <vector>

#include "database/ShadingColumns.h"
#include "model/Text.h"
#include "textfile/GivenEntries.h"
#include "textfile/PaneKeys.h"
#include "textfile/ShadingKeys.h"

namespace orv::commands {

namespace {

using Entries = std::set<std::string>;

bool has(const Entries& entries, std::string_view key) {
  return entries.contains(lowerCase(key));
}

/// A column, and the entries of which any gives it.
struct PaneColumn {
  const char* column;
  std::vector<std::string_view> keys;
};

const std::vector<PaneColumn>& paneColumns() {
  static const std::vector<PaneColumn> columns = [] {
    std::vector<PaneColumn> all{
        {"product_name", {"Product Name"}},
        {"supplierID", {"Manufacturer", "supplier"}},
        {"transmission_IR_outdoor", {textfile::kInfraredLine}},
        {"transmission_IR_indoor", {textfile::kInfraredLine, textfile::kBackTransmittanceKey}}};
    for (const auto& flag : textfile::kPaneFlagKeys) {
      const bool followsFromType = flag.key == "single_layer" || flag.key == "use_estimation";
      all.push_back({flag.key.data(), {flag.key}});
      if (followsFromType) all.back().keys.emplace_back("Type");
    }
    return all;
  }();
  return columns;
}

/// What the reader takes from another entry, or from the spectrum, where an entry of its own is not
/// there.
bool followsFromOthers(const ShadingDataClass& shading, const Entries& entries,
                       std::string_view column) {
  const auto hasAny = [&](auto... keys) { return (has(entries, keys) || ...); };
  if (column == "transmission_IR_indoor" || column == "transmissivity_slat_surf") {
    return hasAny("IR transmittance");
  }
  if (column == "emissivity_slat_surf_outd") return hasAny("Emissivity front");
  if (column == "emissivity_slat_surf_ind") return hasAny("Emissivity back");
  if (column == "homogenious") return hasAny("Width", "Pitch");
  if (column == "horizontal" || column == "vertical") return hasAny(textfile::kOrientationKey);
  if (column == "typeID") return hasAny(textfile::kProductTypeKey);
  const bool isOfSurface =
      column.starts_with("Sol_") || column.starts_with("Vis_") || column.starts_with("Uv_");
  return (isOfSurface || column == "spectral") && !shading.spectrum().empty();
}

/// The key of a property in one of the tables; empty where it is in none.
struct KeyOf {
  template <class T>
  std::string_view operator()(Property<T> ShadingDataClass::*member) const {
    using Member = Property<T> ShadingDataClass::*;  // GCC 12 takes decltype(member) for another
    std::string_view key;
    const auto lookIn = [&](const auto& keys) {
      for (const auto& each : keys) {
        if constexpr (std::is_same_v<decltype(each.property), Member>) {
          if (each.property == member) key = each.key;
        }
      }
    };
    lookIn(textfile::kShadingTextKeys);
    lookIn(textfile::kShadingMeasureKeys);
    lookIn(textfile::kShadingDerivedKeys);
    lookIn(textfile::kShadingFlagKeys);
    return key;
  }
  std::string_view operator()(database::ShadingKey) const { return "Manufacturer"; }
};

}  // namespace

std::set<std::string> columnsNotGiven(const GlazingData& pane, const Entries& entries) {
  std::set<std::string> missing;
  for (const PaneColumn& each : paneColumns()) {
    const bool isGiven =
        std::ranges::any_of(each.keys, [&](std::string_view key) { return has(entries, key); });
    if (!isGiven) missing.insert(std::string("Pane.") + each.column);
  }
  if (pane.ef() < 0) missing.insert("Pane.emission_IR_outdoor");
  if (pane.eb() < 0) missing.insert("Pane.emission_IR_indoor");
  return missing;
}

std::set<std::string> columnsNotGiven(const ShadingDataClass& shading, const Entries& entries) {
  std::set<std::string> missing;
  for (const auto& column : database::shadingColumns()) {
    const std::string_view name = column.name;
    const bool isSupplier = std::holds_alternative<database::ShadingKey>(column.member);
    const bool isGiven = name == "name" || has(entries, std::visit(KeyOf(), column.member)) ||
                         (isSupplier && has(entries, "supplier")) ||
                         (name == textfile::kSupplierDataKey && has(entries, name)) ||
                         followsFromOthers(shading, entries, name);
    if (!isGiven) missing.insert("Shading." + std::string(name));
  }
  return missing;
}

}  // namespace orv::commands
