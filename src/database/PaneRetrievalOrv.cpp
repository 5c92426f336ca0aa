// Panes of ORV databases of versions 3.0.0 and 2.0.1.
#include "database/DatabaseErrors.h"
#include "database/Fields.h"
#include "database/Lookups.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/PaneDetails.h"
#include "database/Recordsets.h"
#include "model/Codes.h"
#include "model/Text.h"

namespace orv::database {

namespace {

/// Columns that both versions have, from the key's column to that of the film's side, in the
/// order in which a pane is filled.
void readCommonColumns(GlazingData& data, const store::Recordset& row) {
  data.Thickness(fieldToSingle(row.value("thickness")));
  data.Conductivity(fieldToSingle(row.value("conduction")));
  data.ORV_Emissivity_front(FieldToDouble(row.value("emission_IR_outdoor")));
  data.ORV_Emissivity_back(FieldToDouble(row.value("emission_IR_indoor")));
  data.TfIR(fieldToSingle(row.value("transmission_IR_outdoor")));
  data.TbiR(fieldToSingle(row.value("transmission_IR_indoor")));
  data.GlazingType(kUnknownType);
  data.single_layer(row.value("single_layer").toBoolean());
  data.use_estimation(row.value("use_estimation").toBoolean());
  data.Use_0_30_60(row.value("0_30_60").toBoolean());
  data.spectral_pane(row.value("spectral_pane").toBoolean());
  data.with_and_without_film(row.value("with_and_without_film").toBoolean());
  data.ORV_CoatingClass(upperCase(FieldToString(row.value("coatingcode"))));
  data.description(FieldToString(row.value("Info")));
  data.ORV_Frozen(row.value("freeze").toBoolean());
  data.Appearance("");
  data.film_outdoor_side(row.value("film_outdoor_side").toBoolean());
}

void readIdentity(GlazingData& data, const store::Recordset& row, const char* keyColumn,
                  std::int16_t angle, std::int32_t direction) {
  data.id(FieldToLong(row.value(keyColumn)));
  data.unit(kSI);
  data.ORV_Angle(angle);
  data.ORV_Direction(direction);
  data.filename(FieldToString(row.value("name")));
}

std::vector<std::int16_t> readAngles(store::Connection& dc, const std::string& keyColumn,
                                     std::int32_t paneId) {
  auto rows = openCountedSql(
      dc, "SELECT * FROM Pane_integrated_data WHERE " + keyColumn + " = " + std::to_string(paneId));
  std::vector<std::int16_t> angles;
  for (; !rows->eof(); rows->moveNext()) angles.push_back(fieldToInteger(rows->value("angle")));
  return angles;
}

}  // namespace

ORV_DatabaseInterface::PanePtr ORV_DatabaseInterface::RetrievePaneORV_30(
    store::Connection& dc, std::int32_t PaneID, const std::string& PaneName,
    const std::string& GroupName, std::int16_t Angle, std::int32_t Direction) const {
  RaiseUnless(PaneID >= 1 || !PaneName.empty(), kRetrievalFailed);
  std::string statement = "SELECT * FROM Pane WHERE ";
  if (PaneID >= 1) {
    statement += "PaneID = " + std::to_string(PaneID);
  } else {
    statement += "name = " + quoted(PaneName);
    if (!GroupName.empty()) {
      statement += " AND GroupID = " + std::to_string(GroupIdByName(GroupName, dc));
    }
  }
  auto row = openSql(dc, statement);
  if (row->eof()) return nullptr;

  auto data = std::make_shared<GlazingData>();
  readIdentity(*data, *row, "PaneID", Angle, Direction);
  data->productname(FieldToString(row->value("product_name")));
  data->supplier(SupplierNameById(FieldToLong(row->value("SupplierID")), dc));
  // The group in the database is not taken over, whatever it is: who copies a pane names its group.
  data->group("Unknown");
  readCommonColumns(*data, *row);
  data->Acceptance(FieldToString(row->value("acceptance")));
  ReadIntegratedDataORV_30(*data, dc);
  if (data->spectral_pane()) ReadSpectralDataORV_30(*data, dc);
  return data;
}

ORV_DatabaseInterface::PanePtr ORV_DatabaseInterface::RetrievePaneORV_20(
    store::Connection& dc, std::int32_t Pane_id, const std::string& PaneName, std::int16_t Angle,
    std::int32_t Direction) const {
  RaiseUnless(Pane_id >= 1 || !PaneName.empty(), kRetrievalFailed);
  std::string statement = "Select * FROM Pane WHERE ";
  statement += Pane_id >= 1 ? "Pane_id = " + std::to_string(Pane_id) : "name = " + quoted(PaneName);
  auto row = openSql(dc, statement);
  if (row->eof()) return nullptr;

  auto data = std::make_shared<GlazingData>();
  readIdentity(*data, *row, "Pane_id", Angle, Direction);
  readCommonColumns(*data, *row);
  data->supplier("Unknown");
  data->Acceptance("");
  data->group("Unknown");
  ReadIntegratedDataORV_20(*data, dc);
  if (data->spectral_pane()) ReadSpectralDataORV_20(*data, dc);
  return data;
}

std::vector<std::int16_t> ORV_DatabaseInterface::RetrieveAnglesOfPaneDataORV_30(
    std::int32_t PaneID, store::Connection& dc) const {
  return readAngles(dc, "PaneID", PaneID);
}

std::vector<std::int16_t> ORV_DatabaseInterface::RetrieveAnglesOfPaneDataORV_20(
    std::int32_t Pane_id, store::Connection& dc) const {
  return readAngles(dc, "Pane_id", Pane_id);
}

}  // namespace orv::database
