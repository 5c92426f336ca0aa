// The rows of a pane in an ORV database of version 3.0.0.
#include "database/PaneRows.h"

#include "database/CoatingCode.h"
#include "database/Lookups.h"
#include "database/Recordsets.h"
#include "model/Codes.h"
#include "model/IntegratedColumns.h"
#include "model/Text.h"

namespace orv::database {

namespace {

/// The appearance is stored only where there is no description.
std::string infoText(const GlazingData& data) {
  if (!data.description().empty()) return data.description();
  return data.Appearance().empty() ? std::string() : "Appearance: " + data.Appearance();
}

}  // namespace

std::string storedCoatingClass(const GlazingData& data) {
  return data.ORV_CoatingClass().empty() ? coatingCode(kCoatingCodeArgument, kCoatingCodeArgument)
                                         : upperCase(data.ORV_CoatingClass());
}

void setPaneColumns(const GlazingData& data,
                    const std::function<void(const char* column, const store::Value&)>& set) {
  set("name", data.filename());
  set("product_name", data.productname());
  set("thickness", data.ConvertedThickness(kSI));
  set("conduction", data.ConvertedConductivity(kSI));
  set("emission_IR_outdoor", data.ORV_Emissivity_front());
  set("emission_IR_indoor", data.ORV_Emissivity_back());
  set("transmission_IR_outdoor", data.TfIR());
  set("transmission_IR_indoor", data.TbiR());
  set("single_layer", data.single_layer());
  set("use_estimation", data.use_estimation());
  set("0_30_60", data.Use_0_30_60());
  set("spectral_pane", data.spectral_pane());
  set("film_outdoor_side", data.film_outdoor_side());
  set("with_and_without_film", data.with_and_without_film());
  set("info", infoText(data));
  set("freeze", data.ORV_Frozen());
  set("acceptance", data.Acceptance());
}

namespace {

void setIntegratedColumns(store::Recordset& row, const GlazingData& data) {
  for (const IntegratedColumn& value : kIntegratedColumns) {
    row.setValue(value.column, (data.*value.pane)());
  }
}

}  // namespace

void insertIntegratedRow(const GlazingData& data, store::Connection& dc) {
  auto row = openBatch(dc, "Pane_integrated_data");
  row->addNew();
  row->setValue("PaneID", data.id());
  row->setValue("angle", std::int32_t{data.ORV_Angle()});
  setIntegratedColumns(*row, data);
  row->updateBatch();
}

void storeIntegratedRow(const GlazingData& data, store::Connection& dc) {
  auto row = openForChange(
      dc, "SELECT * FROM Pane_integrated_data WHERE PaneID = " + std::to_string(data.id()) +
              " AND angle = " + std::to_string(data.ORV_Angle()));
  if (row->eof()) return insertIntegratedRow(data, dc);
  setIntegratedColumns(*row, data);
  row->update();
}

bool hasSpectrum(const GlazingData& pane) {
  return pane.spectral_pane() && pane.SpectralData();
}

void insertSpectralRows(const GlazingData& data, store::Connection& dc) {
  const SpectralData& spectrum = *data.SpectralData();
  const SpectralData* substrate =
      data.HasSubstrate() ? data.SubstrateReference()->SpectralData().get() : nullptr;
  auto rows = openBatch(dc, "Pane_spectral_data");
  const std::size_t pane = rows->fieldIndex("PaneID");
  const std::size_t angle = rows->fieldIndex("angle");
  const std::size_t wavelength = rows->fieldIndex("wavelength");
  const std::size_t transmission = rows->fieldIndex("transmission_outdoor");
  const std::size_t reflectionOutdoor = rows->fieldIndex("reflection_outdoor");
  const std::size_t reflectionIndoor = rows->fieldIndex("reflection_indoor");
  const std::size_t transmissionSub = rows->fieldIndex("transmission_sub");
  const std::size_t reflectionSub = rows->fieldIndex("reflection_sub");
  const std::int32_t count = spectrum.count();
  for (std::int32_t i = 0; i < count; ++i) {
    rows->addNew();
    rows->setValue(pane, data.id());
    rows->setValue(angle, std::int32_t{data.ORV_Angle()});
    rows->setValue(wavelength, spectrum.ConvertedWl(i, kNanometers));
    rows->setValue(transmission, spectrum.Tf(i));
    rows->setValue(reflectionOutdoor, spectrum.Rf(i));
    rows->setValue(reflectionIndoor, spectrum.Rb(i));
    rows->setValue(transmissionSub, substrate ? substrate->Tf(i) : 0.0F);
    rows->setValue(reflectionSub, substrate ? substrate->Rf(i) : 0.0F);
  }
  rows->updateBatch();
}

void deletePaneData(std::int32_t id, store::Connection& dc) {
  for (const char* table : {"Pane_integrated_data", "Pane_spectral_data"}) {
    dc.deleteRows(table, "PaneID = " + std::to_string(id));
  }
}

}  // namespace orv::database
