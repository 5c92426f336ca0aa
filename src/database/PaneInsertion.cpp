// Insertion of panes.
#include "database/DatabaseErrors.h"
#include "database/Lookups.h"
#include "database/MissingNames.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/PaneDetails.h"
#include "database/PaneRows.h"
#include "database/Product.h"
#include "database/RecordCommit.h"
#include "database/Recordsets.h"
#include "database/SpectralValidation.h"
#include "model/IntegratedColumns.h"

namespace orv::database {

namespace {

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

void dropSubstrate(GlazingData& data) {
  data.SubstrateFilename("");
  data.with_and_without_film(false);
  data.SubstrateReference(nullptr);
}

}  // namespace

/// A pane that is there already is refused for that, whatever else is wrong with it.
void ORV_DatabaseInterface::PreparePane(GlazingData& data, store::Connection& dc,
                                        Existing existing) {
  setMissingNames(data);
  if (!hasSpectrum(data)) return;
  const SpectrumVerdict verdict = judgeSpectra(data, dc, existing);
  if (verdict.refusal) {
    const PanePtr known = existing == Existing::refused ? findPane(data, dc) : nullptr;
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
  setPaneColumns(
      data, [&](const char* column, const store::Value& value) { row->setValue(column, value); });
  row->setValue("supplierID", SupplierIdByName(data.supplier(), dc));
  row->setValue("groupID", GroupIdByName(data.group(), dc));
  row->setValue("coatingcode", storedCoatingClass(data));
  row->setValue("Ra", 0);
  row->update();
}

/// Made before the record's commit begins, so that no file is locked while the user thinks. Where
/// the insertion will be refused anyway nobody is asked.
ORV_DatabaseInterface::SpectrumVerdict ORV_DatabaseInterface::judgeSpectra(const GlazingData& data,
                                                                           store::Connection& dc,
                                                                           Existing existing) {
  try {
    checkSpectrum(*data.SpectralData());
  } catch (const Error& error) {
    return {.refusal = error};
  }
  if (!data.HasSubstrate()) return {};
  try {
    checkSubstrate(*data.SpectralData(), *data.SubstrateReference());
  } catch (const Error& error) {
    const PanePtr known = existing == Existing::refused ? findPane(data, dc) : nullptr;
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
