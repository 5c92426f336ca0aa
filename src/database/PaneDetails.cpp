#include "database/PaneDetails.h"

#include <limits>

#include "database/Fields.h"
#include "database/Recordsets.h"
#include "errors/Error.h"
#include "model/IntegratedColumns.h"

namespace orv::database {

namespace {

/// The number of rows, which has to fit 16 bits.
std::int16_t countRows(store::Recordset& rows) {
  const std::int64_t count = rows.recordCount();
  if (count > std::numeric_limits<std::int16_t>::max()) {
    throw Error(kOverflow, "The pane has " + std::to_string(count) +
                               " spectral rows at this angle; 32767 is the most that can be read.");
  }
  return static_cast<std::int16_t>(count);
}

/// Columns of a spectral row, found once for all rows.
struct SpectralColumns {
  explicit SpectralColumns(const store::Recordset& rows, bool withSubstrate)
      : wavelength(rows.fieldIndex("wavelength")),
        transmission(rows.fieldIndex("transmission_outdoor")),
        reflectionOutdoor(rows.fieldIndex("reflection_outdoor")),
        reflectionIndoor(rows.fieldIndex("reflection_indoor")),
        transmissionSubstrate(withSubstrate ? rows.fieldIndex("transmission_sub") : 0) {}

  std::size_t wavelength;
  std::size_t transmission;
  std::size_t reflectionOutdoor;
  std::size_t reflectionIndoor;
  std::size_t transmissionSubstrate;
};

void readPanePoint(SpectralData& spectrum, std::int32_t i, const store::Recordset& rows,
                   const SpectralColumns& columns) {
  spectrum.wl(i, fieldToSingle(rows.value(columns.wavelength)));
  spectrum.Tf(i, fieldToSingle(rows.value(columns.transmission)));
  spectrum.Tb(i, spectrum.Tf(i));
  spectrum.Rf(i, fieldToSingle(rows.value(columns.reflectionOutdoor)));
  spectrum.Rb(i, fieldToSingle(rows.value(columns.reflectionIndoor)));
}

/// The database's reflectance of the substrate is not read: all four curves are its transmittance.
void readSubstratePoint(SpectralData& spectrum, std::int32_t i, const store::Recordset& rows,
                        const SpectralColumns& columns) {
  const float transmission = fieldToSingle(rows.value(columns.transmissionSubstrate));
  spectrum.wl(i, fieldToSingle(rows.value(columns.wavelength)));
  spectrum.Tf(i, transmission);
  spectrum.Tb(i, transmission);
  spectrum.Rf(i, transmission);
  spectrum.Rb(i, transmission);
}

/// Fills `data` from the rows, of which there is one at least.
void readSpectrum(GlazingData& data, store::Recordset& rows, std::int16_t count) {
  data.WavelengthUnit(kNanometers);
  auto spectrum = std::make_shared<SpectralData>();
  spectrum->Allocate(count - 1);
  std::shared_ptr<GlazingData> substrate;
  std::shared_ptr<SpectralData> substrateSpectrum;
  if (data.with_and_without_film()) {
    substrateSpectrum = std::make_shared<SpectralData>();
    substrateSpectrum->Allocate(count - 1);
    substrate = std::make_shared<GlazingData>();
    substrate->WavelengthUnit(kNanometers);
    substrate->SpectralData(substrateSpectrum);
  }
  const SpectralColumns columns(rows, substrate != nullptr);
  for (std::int32_t i = 0; i < count; ++i, rows.moveNext()) {
    readPanePoint(*spectrum, i, rows, columns);
    if (substrateSpectrum) readSubstratePoint(*substrateSpectrum, i, rows, columns);
  }
  data.SpectralData(spectrum);
  if (substrate) data.SubstrateReference(substrate);
}

}  // namespace

void readIntegratedData(GlazingData& data, store::Connection& dc, const OrvPaneSchema& schema) {
  auto rows = openSql(dc, std::string("SELECT * FROM Pane_integrated_data WHERE ") +
                              schema.keyColumn + " = " + std::to_string(data.id()) +
                              " AND angle = " + std::to_string(data.ORV_Angle()));
  data.Precalc_Rfsol(kNoIntegratedData);
  if (rows->eof()) return;
  for (const IntegratedColumn& value : kIntegratedColumns) {
    (data.*value.pane)(fieldToSingle(rows->value(value.column)));
  }
}

void ReadSpectralDataORV_30(GlazingData& data, store::Connection& dc) {
  std::string statement =
      "SELECT * FROM Pane_spectral_data WHERE PaneID = " + std::to_string(data.id()) +
      " AND angle = " + std::to_string(data.ORV_Angle());
  if (data.ORV_Direction() != 0) {
    statement += " AND direction = " + std::to_string(data.ORV_Direction());
  }
  auto rows = openCountedSql(dc, statement + " ORDER BY [wavelength]");
  if (const std::int16_t count = countRows(*rows); count >= 1) readSpectrum(data, *rows, count);
}

void ReadSpectralDataORV_20(GlazingData& data, store::Connection& dc) {
  auto rows = openCountedSql(dc, "SELECT * FROM Pane_spectral_data WHERE Pane_id = " +
                                     std::to_string(data.id()) + " ORDER BY [wavelength]");
  if (const std::int16_t count = countRows(*rows); count >= 1) readSpectrum(data, *rows, count);
}

}  // namespace orv::database
