// Insertion of panes.
#include "database/CoatingCode.h"
#include "database/DatabaseErrors.h"
#include "database/Lookups.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/PaneDetails.h"
#include "database/Product.h"
#include "database/RecordCommit.h"
#include "database/Recordsets.h"
#include "database/SpectralValidation.h"
#include "model/Codes.h"
#include "model/Text.h"

namespace orv::database {

namespace {

/// `Precalc_Rfsol` of a pane without integrated data at an angle.
constexpr float kNoIntegratedData = -1;

bool hasIntegratedData(const GlazingData& pane) {
  return pane.Precalc_Rfsol() != kNoIntegratedData;
}

bool hasSpectrum(const GlazingData& pane) {
  return pane.spectral_pane() && pane.SpectralData();
}

void setMissingNames(GlazingData& pane) {
  if (pane.supplier().empty()) pane.supplier("Unknown");
  if (pane.group().empty()) pane.group("Unknown");
}

/// The appearance is stored only where there is no description.
std::string infoText(const GlazingData& data) {
  if (!data.description().empty()) return data.description();
  return data.Appearance().empty() ? std::string() : "Appearance: " + data.Appearance();
}

std::string coatingClass(const GlazingData& data) {
  return data.ORV_CoatingClass().empty() ? coatingCode(kCoatingCodeArgument, kCoatingCodeArgument)
                                         : upperCase(data.ORV_CoatingClass());
}

void setPaneColumns(store::Recordset& row, const GlazingData& data, store::Connection& dc) {
  row.setValue("name", data.filename());
  row.setValue("product_name", data.productname());
  row.setValue("supplierID", SupplierIdByName(data.supplier(), dc));
  row.setValue("groupID", GroupIdByName(data.group(), dc));
  row.setValue("thickness", data.ConvertedThickness(kSI));
  row.setValue("conduction", data.ConvertedConductivity(kSI));
  row.setValue("emission_IR_outdoor", data.ORV_Emissivity_front());
  row.setValue("emission_IR_indoor", data.ORV_Emissivity_back());
  row.setValue("transmission_IR_outdoor", data.TfIR());
  row.setValue("transmission_IR_indoor", data.TbiR());
  row.setValue("single_layer", data.single_layer());
  row.setValue("use_estimation", data.use_estimation());
  row.setValue("0_30_60", data.Use_0_30_60());
  row.setValue("spectral_pane", data.spectral_pane());
  row.setValue("film_outdoor_side", data.film_outdoor_side());
  row.setValue("with_and_without_film", data.with_and_without_film());
  row.setValue("Ra", 0);
  row.setValue("info", infoText(data));
  row.setValue("freeze", data.ORV_Frozen());
  row.setValue("coatingcode", coatingClass(data));
  row.setValue("acceptance", data.Acceptance());
}

/// Raises kRecordExists when the pane has integrated data at its angle already.
void refuseKnownAngle(const GlazingData& data, store::Connection& dc) {
  GlazingData probe;
  probe.id(data.id());
  probe.filename(data.filename());
  probe.group(data.group());
  probe.ORV_Angle(data.ORV_Angle());
  probe.ORV_Direction(data.ORV_Direction());
  ReadIntegratedDataORV_30(probe, dc);
  RaiseUnless(!hasIntegratedData(probe), kRecordExists);
}

void insertIntegratedRow(const GlazingData& data, store::Connection& dc) {
  auto row = openBatch(dc, "Pane_integrated_data");
  row->addNew();
  row->setValue("PaneID", data.id());
  row->setValue("angle", std::int32_t{data.ORV_Angle()});
  row->setValue("reflection_solar_outdoor", data.Precalc_Rfsol());
  row->setValue("reflection_solar_indoor", data.Precalc_RbSol());
  row->setValue("transmission_solar_outdoor", data.Precalc_Tfsol());
  row->setValue("transmission_solar_indoor", data.Precalc_Tbsol());
  row->setValue("reflection_visual_outdoor", data.Precalc_Rfvis());
  row->setValue("reflection_visual_indoor", data.Precalc_Rbvis());
  row->setValue("transmission_visual_outdoor", data.Precalc_Tfvis());
  row->setValue("transmission_visual_indoor", data.Precalc_Tbvis());
  row->setValue("reflection_UV_outdoor", data.Precalc_Rfuv());
  row->setValue("reflection_UV_indoor", data.Precalc_Rbuv());
  row->setValue("transmission_UV_outdoor", data.Precalc_Tfuv());
  row->setValue("transmission_UV_indoor", data.Precalc_Tbuv());
  row->updateBatch();
  row->close();
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
  rows->close();
}

void dropSubstrate(GlazingData& data) {
  data.SubstrateFilename("");
  data.with_and_without_film(false);
  data.SubstrateReference(nullptr);
}

}  // namespace

/// A pane that is there already is refused for that, whatever else is wrong with it.
void ORV_DatabaseInterface::PreparePane(GlazingData& data, store::Connection& dc) {
  if (!hasSpectrum(data)) return;
  setMissingNames(data);
  const SpectrumVerdict verdict = judgeSpectra(data, dc);
  if (verdict.refusal) {
    const PanePtr known = findPane(data, dc);
    RaiseUnless(!known || !hasIntegratedData(*known), kRecordExists);
    throw Error(*verdict.refusal);
  }
  if (verdict.dropsSubstrate) dropSubstrate(data);
}

void ORV_DatabaseInterface::InsertPane(GlazingData& data, store::Connection& dc) {
  setMissingNames(data);
  const SpectrumVerdict verdict = hasSpectrum(data) ? judgeSpectra(data, dc) : SpectrumVerdict();
  commitRecord(dc, [&] {
    const PanePtr known = findPane(data, dc);
    if (known) {
      data.id(known->id());
    } else {
      insertPaneRow(data, dc);
    }
    refuseKnownAngle(data, dc);
    insertIntegratedRow(data, dc);
    if (!hasSpectrum(data)) return;
    if (verdict.refusal) throw Error(*verdict.refusal);
    if (verdict.dropsSubstrate) dropSubstrate(data);
    insertSpectralRows(data, dc);
  });
}

ORV_DatabaseInterface::PanePtr ORV_DatabaseInterface::findPane(const GlazingData& data,
                                                               store::Connection& dc) const {
  return RetrievePaneORV_30(dc, 0, data.filename(), data.group(), data.ORV_Angle(),
                            data.ORV_Direction());
}

/// Should the row be refused, those of the lookup tables stay.
void ORV_DatabaseInterface::insertPaneRow(GlazingData& data, store::Connection& dc) const {
  InsertSupplier(data.supplier(), dc);
  InsertGroup(data.group(), dc);
  auto row = openUpdatable(dc, "Pane");
  row->addNew();
  data.id(row->value("PaneID").toLong());
  setPaneColumns(*row, data, dc);
  row->update();
  row->close();
}

/// Made before the record's commit begins, so that no file is locked while the user thinks. Where
/// the insertion will be refused anyway nobody is asked.
ORV_DatabaseInterface::SpectrumVerdict ORV_DatabaseInterface::judgeSpectra(const GlazingData& data,
                                                                           store::Connection& dc) {
  try {
    checkSpectrum(*data.SpectralData());
  } catch (const Error& error) {
    return {.refusal = error};
  }
  if (!data.HasSubstrate()) return {};
  try {
    checkSubstrate(*data.SpectralData(), *data.SubstrateReference());
  } catch (const Error& error) {
    const PanePtr known = findPane(data, dc);
    if (known && hasIntegratedData(*known)) return {};
    if (!mayDropSubstrate(data, error.description())) return {.refusal = error};
    return {.dropsSubstrate = true};
  }
  return {};
}

bool ORV_DatabaseInterface::mayDropSubstrate(const GlazingData& data, const std::string& reason) {
  if (ignoreSubstrate_) return true;
  if (!questions_.confirm(reason + "\n\nDo you want to save this pane (" + data.filename() +
                              ") without saving the substrate data?",
                          kApplicationTitle)) {
    return false;
  }
  ignoreSubstrate_ = questions_.confirm(
      "Do you want to ignore the substrate for other files with incompatible substrate data?",
      kTaskVisible);
  return true;
}

}  // namespace orv::database
