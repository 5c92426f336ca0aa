// Panes of the IGDB and of Optics5 user databases.
#include "database/CoatingCode.h"
#include "database/Fields.h"
#include "database/IgdbRows.h"
#include "database/Lookups.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/Recordsets.h"
#include "model/Codes.h"
#include "model/Text.h"

namespace orv::database {

namespace {

/// What a pane's `Type` becomes.
struct PaneKind {
  const char* type;  ///< in upper case
  std::int32_t glazingType;
  const char* word;
};

constexpr PaneKind kPaneKinds[] = {{"MONOLITHIC", kMonolithic, "Monolithic"},
                                   {"COATED", kCoated, "Coated"},
                                   {"APPLIED FILM", kAppliedFilm, "Applied film"},
                                   {"LAMINATE", kLaminate, "Laminate"}};
constexpr PaneKind kUnknownKind{"", kUnknownType, "Unknown"};

const PaneKind& paneKind(const std::string& type) {
  const std::string upper = upperCase(type);
  for (const PaneKind& kind : kPaneKinds) {
    if (upper == kind.type) return kind;
  }
  return kUnknownKind;
}

/// Sets the spectrum of `data` from the rows of its id; leaves it unset when there are none.
void ReadSpectralDataIGDB(GlazingData& data, store::Connection& dc) {
  auto rows = openCountedSql(dc, "SELECT * FROM SpectralData WHERE GlazingID = " +
                                     std::to_string(data.id()) + " ORDER BY [wavelength]");
  const auto count = static_cast<std::int32_t>(rows->recordCount());
  if (count < 1) return;
  data.WavelengthUnit(kMicrons);
  auto spectrum = std::make_shared<SpectralData>();
  spectrum->Allocate(count - 1);
  const std::size_t wavelength = rows->fieldIndex("Wavelength");
  const std::size_t transmission = rows->fieldIndex("T");
  const std::size_t reflectionFront = rows->fieldIndex("Rf");
  const std::size_t reflectionBack = rows->fieldIndex("Rb");
  for (std::int32_t i = 0; i < count; ++i, rows->moveNext()) {
    spectrum->wl(i, fieldToSingle(rows->value(wavelength)));
    spectrum->Tf(i, fieldToSingle(rows->value(transmission)));
    spectrum->Tb(i, spectrum->Tf(i));
    spectrum->Rf(i, fieldToSingle(rows->value(reflectionFront)));
    spectrum->Rb(i, fieldToSingle(rows->value(reflectionBack)));
  }
  data.SpectralData(spectrum);
}

/// Sets the integrated values of `data` from the row of its id.
void ReadPrecalcIGDB(GlazingData& data, store::Connection& dc) {
  auto row =
      openSql(dc, "SELECT * FROM GlazingProperties WHERE GlazingID = " + std::to_string(data.id()));
  if (row->eof()) return;
  readIgdbIntegrated(data, *row);
}

/// Gives a pane with film its substrate: file name, id and, when it is found, spectrum.
void readSubstrate(GlazingData& data, const store::Recordset& row, store::Connection& dc) {
  auto substrate = std::make_shared<GlazingData>();
  data.SubstrateReference(substrate);
  data.SubstrateFilename(row.value("Substrate_FileName").toText());
  substrate->id(GlazingIdByFileName(data.SubstrateFilename(), dc));
  if (substrate->id() >= 1) ReadSpectralDataIGDB(*substrate, dc);
}

}  // namespace

void readIgdbProperties(GlazingData& data, const store::Recordset& row) {
  const PaneKind& kind = paneKind(FieldToString(row.value("Type")));
  const std::string substrate = FieldToString(row.value("Substrate_FileName"));
  data.unit(kSI);
  data.WavelengthUnit(kMicrons);
  data.ORV_Angle(0);
  data.ORV_Direction(1);
  data.filename(FieldToString(row.value("FileName")));
  data.Thickness(fieldToSingle(row.value("Thickness")));
  data.productname(FieldToString(row.value("ProductName")));
  data.Conductivity(fieldToSingle(row.value("Conductivity")));
  data.ORV_Emissivity_front(FieldToDouble(row.value("ef")));
  data.ORV_Emissivity_back(FieldToDouble(row.value("eb")));
  data.TfIR(fieldToSingle(row.value("TIR")));
  data.TbiR(data.TfIR());
  data.GlazingType(kind.glazingType);
  data.single_layer(kind.glazingType == kMonolithic);
  data.use_estimation(!data.single_layer());
  data.Use_0_30_60(false);
  data.spectral_pane(true);
  data.with_and_without_film(substrate != "Unknown" && substrate != "N/A");
  data.ORV_CoatingClass(coatingCode(kCoatingCodeArgument, kCoatingCodeArgument));
  data.ORV_Frozen(false);
  data.Appearance("");
  data.supplier(FieldToString(row.value("Manufacturer")));
  data.Acceptance(FieldToString(row.value("Acceptance")));
  data.group("IGDB");
  data.description(std::string(kind.word) + " Appearance: " + data.Appearance());
}

void readIgdbIntegrated(GlazingData& data, const store::Recordset& row) {
  const auto read = [&](const char* column) { return fieldToSingle(row.value(column)); };
  data.Precalc_Rfsol(read("Precalc_Rfsol"));
  data.Precalc_RbSol(read("Precalc_Rbsol"));
  data.Precalc_Tfsol(read("Precalc_Tsol"));
  data.Precalc_Tbsol(read("Precalc_Tsol"));
  data.Precalc_Rfvis(read("Precalc_Rfvis"));
  data.Precalc_Rbvis(read("Precalc_Rbvis"));
  data.Precalc_Tfvis(read("Precalc_Tvis"));
  data.Precalc_Tbvis(read("Precalc_Tvis"));
  data.Precalc_Rfuv(0);
  data.Precalc_Rbuv(0);
  data.Precalc_Tfuv(read("Precalc_Tuv"));
  data.Precalc_Tbuv(read("Precalc_Tuv"));
}

ORV_DatabaseInterface::PanePtr ORV_DatabaseInterface::RetrievePaneIGDB(
    store::Connection& dc, const std::string& FileName) const {
  auto glazing = openTable(dc, "GlazingProperties");
  glazing->find("FileName = " + quoted(FileName));
  if (glazing->eof()) return nullptr;
  auto data = std::make_shared<GlazingData>();
  data->id(glazing->value("GlazingID").toLong());

  auto row = openSql(dc, "Select * FROM qryOptics5Grid WHERE FileName = " + quoted(FileName));
  if (row->eof()) return nullptr;
  readIgdbProperties(*data, *row);
  ReadPrecalcIGDB(*data, dc);
  ReadSpectralDataIGDB(*data, dc);
  if (data->with_and_without_film()) readSubstrate(*data, *row, dc);
  return data;
}

}  // namespace orv::database
