// Replacement of panes.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <set>

#include "database/DetailReplacement.h"
#include "database/Directions.h"
#include "database/Fields.h"
#include "database/Lookups.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/PaneRows.h"
#include "database/RowUpdate.h"
#include "database/Rows.h"
#include "model/IntegratedColumns.h"

namespace orv::database {

namespace {

using Panes = std::vector<ORV_DatabaseInterface::PanePtr>;

constexpr const char* kIntegrated = "Pane_integrated_data";
constexpr const char* kSpectral = "Pane_spectral_data";

/// The angles at which the database has data and the new pane has none, ascending.
std::vector<std::int16_t> otherAngles(const Panes& panes, const Replacement& how,
                                      store::Connection& dc) {
  std::set<std::int16_t> others;
  for (const char* table : {kIntegrated, kSpectral}) {
    auto rows =
        openSql(dc, fmt::format("SELECT DISTINCT angle FROM {} WHERE PaneID = {}", table, how.key));
    for (; !rows->eof(); rows->moveNext()) {
      others.insert(static_cast<std::int16_t>(FieldToLong(rows->value("angle"))));
    }
  }
  for (const auto& pane : panes) others.erase(pane->ORV_Angle());
  for (const std::int16_t angle : how.unbrought) others.erase(angle);
  return {others.begin(), others.end()};
}

/// The data at an angle of a pane that is there.
class AngleReplacement {
 public:
  AngleReplacement(const GlazingData& pane, const Replacement& how, store::Connection& dc)
      : pane_(pane), how_(how), given_(how.at(pane.ORV_Angle())), dc_(dc) {}

  /// True when values that were computed have been stored.
  bool run() {
    const bool hasOtherSpectrum = replaceSpectrum();
    return replaceIntegrated(hasOtherSpectrum);
  }

 private:
  std::string condition() const {
    return fmt::format("PaneID = {} AND angle = {}", how_.key, pane_.ORV_Angle());
  }
  std::vector<std::pair<std::string, store::Value>> keys() const {
    return {{"PaneID", how_.key}, {"angle", std::int32_t{pane_.ORV_Angle()}}};
  }

  std::vector<std::int32_t> directions() const {
    std::set<std::int32_t> known;
    auto rows = openSql(
        dc_, fmt::format("SELECT DISTINCT direction FROM {} WHERE {}", kSpectral, condition()));
    for (; !rows->eof(); rows->moveNext()) known.insert(FieldToLong(rows->value("direction")));
    return {known.begin(), known.end()};
  }

  /// Of one direction: the others that are there stay, as no copy brings more.
  bool replaceSpectrum() {
    if (given_.hasUnreadSpectrum) return false;
    Details details{.table = kSpectral,
                    .condition = condition(),
                    .place = "wavelength",
                    .columns = {"transmission_outdoor", "reflection_outdoor", "reflection_indoor"},
                    .keys = keys(),
                    .rows = {}};
    const auto known = directions();
    const std::int32_t direction = directionToUse(known, given_.direction);
    if (direction != kAnyDirection) {
      details.condition += " AND direction = " + std::to_string(direction);
    }
    const std::int32_t added = known.size() == 1 ? known.front() : direction;
    if (added != kAnyDirection) details.keys.emplace_back("direction", added);
    if (hasSpectrum(pane_)) addPoints(details);
    return replaceDetails(details, how_, dc_);
  }

  void addPoints(Details& details) const {
    const SpectralData& spectrum = *pane_.SpectralData();
    const SpectralData* substrate =
        pane_.HasSubstrate() ? pane_.SubstrateReference()->SpectralData().get() : nullptr;
    if (substrate) {
      details.columns.emplace_back("transmission_sub");
      details.columns.emplace_back("reflection_sub");
    }
    for (std::int32_t i = 0; i < spectrum.count(); ++i) {
      DetailRow& row = details.rows.emplace_back();
      row.place = spectrum.ConvertedWl(i, kNanometers);
      row.values = {spectrum.Tf(i), spectrum.Rf(i), spectrum.Rb(i)};
      if (!substrate) continue;
      row.values.emplace_back(substrate->Tf(i));
      row.values.emplace_back(substrate->Rf(i));
    }
  }

  /// Values that the source does not give were computed, and follow the spectrum. Where that does
  /// not reach they are 0, which takes the place of nothing.
  bool replaceIntegrated(bool hasOtherSpectrum) {
    bool tookComputed = false;
    Details details{.table = kIntegrated,
                    .condition = condition(),
                    .place = "angle",
                    .columns = {},
                    .keys = keys(),
                    .rows = {}};
    DetailRow row{.place = static_cast<double>(pane_.ORV_Angle()), .values = {}};
    Replacement how = how_;
    for (const IntegratedColumn& value : kIntegratedColumns) {
      details.columns.emplace_back(value.column);
      const float computed = (pane_.*value.pane)();
      row.values.emplace_back(computed);
      if (!given_.computed.contains(value.column)) continue;
      const bool stays = (!hasOtherSpectrum || computed == 0) && isThere();
      if (stays) how.notGiven.insert(std::string(kIntegrated) + "." + value.column);
      tookComputed |= computed != 0 && how.gives(kIntegrated, value.column);
    }
    details.rows.push_back(std::move(row));
    replaceDetails(details, how, dc_);
    return tookComputed;
  }

  bool isThere() {
    if (!hasRow_) {
      hasRow_ =
          !openSql(dc_, fmt::format("SELECT angle FROM {} WHERE {}", kIntegrated, condition()))
               ->eof();
    }
    return *hasRow_;
  }

  const GlazingData& pane_;
  const Replacement& how_;
  GivenAngle given_;
  store::Connection& dc_;
  std::optional<bool> hasRow_;  ///< of integrated values
};

void deleteAngles(const std::vector<std::int16_t>& angles, std::int32_t id, store::Connection& dc) {
  for (const std::int16_t angle : angles) {
    for (const char* table : {kIntegrated, kSpectral}) {
      dc.deleteRows(table, fmt::format("PaneID = {} AND angle = {}", id, angle));
    }
  }
}

}  // namespace

ReplacedPane ORV_DatabaseInterface::ReplacePane(const Panes& angles, const Replacement& how,
                                                store::Connection& dc) const {
  ReplacedPane result;
  dc.inOneCommit([&] {
    GlazingData& first = *angles.front();
    Replacement known = how;
    if (known.key == 0) {
      const PanePtr present = findPane(first, dc);
      known.key = present ? present->id() : 0;
    }
    result.wasThere = known.key != 0;
    if (result.wasThere) {
      first.id(known.key);
      result.otherAngles = otherAngles(angles, known, dc);
      if (how.others == OtherAngles::deleted) deleteAngles(result.otherAngles, known.key, dc);
      result.lostSubstrate = replacePaneRow(first, known, dc);
    } else {
      insertPaneRow(first, dc);
    }
    for (const PanePtr& pane : angles) {
      pane->id(first.id());
      if (result.wasThere) {
        result.tookComputed |= AngleReplacement(*pane, known, dc).run();
      } else {
        insertIntegratedRow(*pane, dc);
        if (hasSpectrum(*pane)) insertSpectralRows(*pane, dc);
      }
    }
  });
  return result;
}

void ORV_DatabaseInterface::StoreIntegratedData(const Panes& angles, store::Connection& dc) const {
  dc.inOneCommit([&] {
    for (const PanePtr& pane : angles) storeIntegratedRow(*pane, dc);
  });
}

/// The group, by which the pane was found, and the colour rendering index, of which no pane that is
/// copied tells, stay as they are. True when the pane has lost its substrate.
bool ORV_DatabaseInterface::replacePaneRow(const GlazingData& data, const Replacement& how,
                                           store::Connection& dc) const {
  auto row = findRecord(dc, "Pane", "PaneID", data.id());
  const bool hadSubstrate = row->value("with_and_without_film").toBoolean();
  const std::string maker = SupplierNameById(FieldToLong(row->value("supplierID")), dc);
  RowUpdate update(*row, "Pane", how);
  setPaneColumns(data,
                 [&](const char* column, const store::Value& value) { update.set(column, value); });
  update.setCaseless("coatingcode", storedCoatingClass(data));
  if (update.isOther("supplierID", maker, data.supplier())) {
    update.set("supplierID", InsertSupplier(data.supplier(), dc), true);
  }
  update.store();
  return hadSubstrate && !row->value("with_and_without_film").toBoolean();
}

}  // namespace orv::database
