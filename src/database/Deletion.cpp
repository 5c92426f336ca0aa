// Removal of panes, shadings and frames.
#include "database/ORV_DatabaseInterface.h"
#include "database/PaneRows.h"
#include "database/RecordCommit.h"
#include "database/Rows.h"

namespace orv::database {

void ORV_DatabaseInterface::DeleteGlazing(std::int32_t PaneID, store::Connection& dc) const {
  commitRecord(dc, [&] {
    auto pane = findRecord(dc, "Pane", "PaneID", PaneID);
    deletePaneData(PaneID, dc);
    pane->deleteRow();
  });
}

void ORV_DatabaseInterface::DeleteShading(std::int32_t Shading_id, store::Connection& dc) const {
  findRecord(dc, "Shading", "Shading_id", Shading_id)->deleteRow();
}

void ORV_DatabaseInterface::DeleteFrame(std::int32_t FrameID, store::Connection& dc) const {
  findRecord(dc, "Frame", "FrameID", FrameID)->deleteRow();
}

}  // namespace orv::database
