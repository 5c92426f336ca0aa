// A database with the tables of the International Glazing Database, made for a test.
#pragma once

#include <string>
#include <vector>

#include "database/TestDatabase.h"

namespace orv::test {

/// Makes it at `path` with panes of these fields, the first their key, and for each three points of
/// a spectrum, the longest wavelength first.
inline std::shared_ptr<store::Connection> makeGlazingDatabase(
    const std::string& path, const std::vector<FieldValues>& panes) {
  auto dc = store::Connection::create(path);
  store::TableInfo properties{"GlazingProperties", {{"GlazingID", store::ColumnType::longInteger}}};
  for (const char* name :
       {"FileName", "ProductName", "Type", "Substrate_FileName", "Manufacturer", "Acceptance"}) {
    properties.columns.push_back({name, store::ColumnType::text, 100});
  }
  for (const char* name :
       {"Thickness", "Conductivity", "ef", "eb", "TIR", "Precalc_Rfsol", "Precalc_Rbsol",
        "Precalc_Tsol", "Precalc_Rfvis", "Precalc_Rbvis", "Precalc_Tvis", "Precalc_Tuv"}) {
    properties.columns.push_back({name, store::ColumnType::single});
  }
  dc->createTable(properties);
  store::TableInfo spectra{"SpectralData", {{"GlazingID", store::ColumnType::longInteger}}};
  for (const char* name : {"Wavelength", "T", "Rf", "Rb"}) {
    spectra.columns.push_back({name, store::ColumnType::single});
  }
  dc->createTable(spectra);
  store::QueryDesign query{
      .name = "qryOptics5Grid", .outputs = {}, .tables = {"GlazingProperties"}};
  for (const auto& column : properties.columns) {
    query.outputs.push_back({"GlazingProperties." + column.name});
  }
  dc->createQuery(query);
  for (const FieldValues& pane : panes) {
    addRow(*dc, "GlazingProperties", pane);
    const double id = pane.front().second.toDouble();
    for (const double wavelength : {2.5, 0.5, 0.3}) {
      addRow(*dc, "SpectralData",
             {{"GlazingID", id},
              {"Wavelength", wavelength},
              {"T", wavelength / 4 + id / 100},
              {"Rf", wavelength / 8 + id / 100},
              {"Rb", wavelength / 16 + id / 100}});
    }
  }
  return dc;
}

}  // namespace orv::test
