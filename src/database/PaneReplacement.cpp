// Replacement of panes.
#include <algorithm>

#include "database/Fields.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/PaneRows.h"
#include "database/Rows.h"

namespace orv::database {

namespace {

using Panes = std::vector<ORV_DatabaseInterface::PanePtr>;

/// The angles at which the database has data and the new pane has none, ascending.
std::vector<std::int16_t> otherAngles(std::int32_t id, const Panes& panes, store::Connection& dc) {
  std::vector<std::int16_t> others;
  auto rows = openSql(dc, "SELECT DISTINCT angle FROM Pane_integrated_data WHERE PaneID = " +
                              std::to_string(id) + " ORDER BY angle");
  for (; !rows->eof(); rows->moveNext()) {
    const std::int32_t angle = FieldToLong(rows->value("angle"));
    const bool isNew =
        std::ranges::any_of(panes, [&](const auto& pane) { return pane->ORV_Angle() == angle; });
    if (!isNew) others.push_back(static_cast<std::int16_t>(angle));
  }
  return others;
}

}  // namespace

ReplacedPane ORV_DatabaseInterface::ReplacePane(const Panes& angles, OtherAngles others,
                                                store::Connection& dc) const {
  ReplacedPane result;
  dc.inOneCommit([&] {
    GlazingData& first = *angles.front();
    if (const PanePtr known = findPane(first, dc)) {
      result.wasThere = true;
      first.id(known->id());
      result.otherAngles = otherAngles(first.id(), angles, dc);
      if (others == OtherAngles::deleted) deletePaneData(first.id(), std::nullopt, dc);
      replacePaneRow(first, dc);
    } else {
      insertPaneRow(first, dc);
    }
    for (const PanePtr& pane : angles) {
      pane->id(first.id());
      if (result.wasThere && others == OtherAngles::kept) {
        deletePaneData(first.id(), pane->ORV_Angle(), dc);
      }
      insertIntegratedRow(*pane, dc);
      if (hasSpectrum(*pane)) insertSpectralRows(*pane, dc);
    }
  });
  return result;
}

void ORV_DatabaseInterface::StoreIntegratedData(const Panes& angles, store::Connection& dc) const {
  dc.inOneCommit([&] {
    for (const PanePtr& pane : angles) storeIntegratedRow(*pane, dc);
  });
}

/// The colour rendering index, of which no pane that is copied tells, stays as it is.
void ORV_DatabaseInterface::replacePaneRow(const GlazingData& data, store::Connection& dc) const {
  InsertSupplier(data.supplier(), dc);
  auto row = findRecord(dc, "Pane", "PaneID", data.id());
  setPaneColumns(*row, data, dc);
  row->update();
}

}  // namespace orv::database
