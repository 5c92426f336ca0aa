// Removal of panes, shadings and frames.
#include "database/ORV_DatabaseInterface.h"
#include "database/RecordCommit.h"
#include "database/Recordsets.h"
#include "errors/Error.h"

namespace orv::database {

namespace {

/// The table, standing on the row with this key.
RecordsetPtr findRecord(store::Connection& dc, const std::string& table,
                        const std::string& keyColumn, std::int32_t id) {
  auto rows = openForDeletion(dc, table);
  rows->find(keyColumn + " = " + quoted(std::to_string(id)));
  if (rows->eof()) {
    rows->close();
    throw Error(kTypeMismatch, table + " could not be found!");
  }
  return rows;
}

void deleteRowsOfPane(store::Connection& dc, const std::string& table, std::int32_t paneId) {
  auto rows = openForBatchDeletion(
      dc, "SELECT * FROM " + table + " WHERE PaneID = " + std::to_string(paneId));
  while (!rows->eof()) {
    rows->deleteRow();
    rows->moveNext();
  }
  rows->updateBatch();
  rows->close();
}

}  // namespace

void ORV_DatabaseInterface::DeleteGlazing(std::int32_t PaneID, store::Connection& dc) const {
  commitRecord(dc, [&] {
    auto pane = findRecord(dc, "Pane", "PaneID", PaneID);
    deleteRowsOfPane(dc, "Pane_integrated_data", PaneID);
    deleteRowsOfPane(dc, "Pane_spectral_data", PaneID);
    pane->deleteRow();
    pane->close();
  });
}

void ORV_DatabaseInterface::DeleteShading(std::int32_t Shading_id, store::Connection& dc) const {
  auto shading = findRecord(dc, "Shading", "Shading_id", Shading_id);
  shading->deleteRow();
  shading->close();
}

void ORV_DatabaseInterface::DeleteFrame(std::int32_t FrameID, store::Connection& dc) const {
  auto frame = findRecord(dc, "Frame", "FrameID", FrameID);
  frame->deleteRow();
  frame->close();
}

}  // namespace orv::database
