// Databases of every kind that is read, made for a test.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "database/TestDatabase.h"

namespace orv::test {

/// Adds a point of a pane's spectrum; all that is measured there follows from the wavelength.
inline void addPoint(store::Connection& dc, std::int32_t pane, int angle, int direction,
                     double wavelength) {
  changeTable(dc,
              fmt::format("+Pane_spectral_data PaneID={}, angle={}, direction={}, "
                          "wavelength={}, transmission_outdoor={}, reflection_outdoor={}, "
                          "reflection_indoor={}",
                          pane, angle, direction, wavelength, wavelength / 4000 + angle / 1000.0,
                          wavelength / 8000 + direction / 100.0, wavelength / 16000));
}

/// Makes a database of version 3.0.0 with panes of several angles and directions, without data, and
/// with doubtful ones, with frames, and with shadings of which two have one name.
inline std::shared_ptr<store::Connection> makeFullDatabase(const std::string& path) {
  auto dc = database::CreateEmptyDatabase(path);
  ScriptedQuestions questions;
  database::ORV_DatabaseInterface database{questions};
  for (const char* name : {"Spare", "Demo"}) database.InsertGroup(name, *dc);
  const auto full = fullPane();
  full->SubstrateReference()->SpectralData(spectrumOfTwo(302.5F));
  full->SubstrateReference()->SpectralData()->Tf(1, 0.7F);
  for (const std::int16_t angle : {37, 60}) {
    full->ORV_Angle(angle);
    database.InsertPane(*full, *dc);
  }
  for (const auto& [name, angle] :
       {std::pair{"turned.txt", 0}, {"dull.txt", 15}, {"odd.txt", 95}}) {
    const auto pane = makePane(name, static_cast<std::int16_t>(angle));
    pane->SpectralData(nullptr);
    database.InsertPane(*pane, *dc);
  }
  addRow(*dc, "Pane", {{"name", "bare.txt"}, {"groupID", 2}, {"thickness", 3.5}});
  for (const auto& [angle, direction] : {std::pair{0, 2}, {0, 1}, {30, 3}}) {
    for (const double wavelength : {320, 480}) addPoint(*dc, 2, angle, direction, wavelength);
  }
  for (const double wavelength : {310, 420}) addPoint(*dc, 3, 15, 0, wavelength);
  for (const double wavelength : {3200, 400, 400}) addPoint(*dc, 4, 95, 0, wavelength);
  changeTable(*dc, "Pane spectral_pane=False, freeze=True where PaneID = 3");
  changeTable(*dc, "Pane Ra=97 where PaneID = 4");
  changeTable(*dc,
              "Pane_spectral_data reflection_sub=0.25 where angle = 60 AND wavelength < 302.6");
  FrameDataClass frame = fullFrame();
  database.InsertFrame(frame, *dc);
  for (const char* name : {"sash", "it's"}) {
    addRow(*dc, "Frame", {{"name", name}, {"groupID", 1}, {"u_value", 2.5}, {"width", 55}});
  }
  ShadingDataClass shading = fullShading();
  database.InsertShading(shading, *dc);
  ShadingDataClass blank;
  blank.name(shading.name());
  blank.productname("blank");
  blank.group("Spare");
  database.InsertShading(blank, *dc);
  return dc;
}

/// New names of tables and columns; empty for those that are left out.
using NewNames = std::map<std::string, std::string>;

/// Makes a database of this version at `path` with the tables of another one.
inline std::shared_ptr<store::Connection> makeRenamed(store::Connection& dc,
                                                      const std::string& path,
                                                      const NewNames& names,
                                                      const std::string& version) {
  const auto nameOf = [&](const std::string& name) {
    const auto found = names.find(name);
    return found == names.end() ? name : found->second;
  };
  auto made = store::Connection::create(path);
  for (const std::string& table : dc.tableNames()) {
    if (nameOf(table).empty() || table == "ORVdata_version") continue;
    store::TableInfo design{table, {}};
    FieldValues values;
    for (store::ColumnInfo column : dc.table(table).columns) {
      if (nameOf(column.name).empty() || nameOf(table + "." + column.name).empty()) continue;
      values.emplace_back(column.name, store::Value());
      column.name = nameOf(column.name);
      if (column.name == "material_type") column = {.name = column.name, .size = 20};
      column.autoNumber = false;
      design.columns.push_back(column);
    }
    made->createTable(design);
    for (auto rows = dc.openRecordset(table); !rows->eof(); rows->moveNext()) {
      FieldValues row;
      for (std::size_t i = 0; i < values.size(); ++i) {
        row.emplace_back(design.columns[i].name, rows->value(values[i].first));
      }
      addRow(*made, table, row);
    }
  }
  made->createTable({"ORVdata_version", {{.name = "version", .size = 20}}});
  addRow(*made, "ORVdata_version", {{"version", version}});
  return made;
}

/// Makes a database of version 2.0.1 with the records of one of version 3.0.0, as far as it has
/// columns for them, with these names besides.
inline std::shared_ptr<store::Connection> makeVersion2Of(store::Connection& dc,
                                                         const std::string& path,
                                                         const NewNames& others = {}) {
  NewNames names = others;
  names.insert({{"PaneID", "Pane_id"}, {"FrameID", "Frame_id"}, {"FrameTypeID", "material_type"}});
  for (const char* missing : {"product_name", "supplierID", "groupID", "acceptance", "direction",
                              "groupnameID", "Groups", "Suppliers", "FrameTypes"}) {
    names.insert({missing, ""});
  }
  return makeRenamed(dc, path, names, "2.0.1");
}

/// Panes of every kind: of glass, coated on it, with a film whose glass is not there, of layers,
/// and of a kind that is not known.
inline std::vector<FieldValues> glazingPanes() {
  const FieldValues clear = valuesOf(
      "GlazingID=3, FileName=CLEAR.DAT, Type=Monolithic, ProductName=Clear ®, Manufacturer=Maker "
      "3, "
      "Acceptance=#, Substrate_FileName=N/A, Thickness=4.5, Conductivity=1.25, ef=0.84, eb=0.75, "
      "TIR=0.125, Precalc_Rfsol=0.1, Precalc_Rbsol=0.2, Precalc_Tsol=0.3, Precalc_Rfvis=0.4, "
      "Precalc_Rbvis=0.5, Precalc_Tvis=0.6, Precalc_Tuv=0.7");
  const auto pane = [](int id, const char* name, const char* type, const char* substrate) {
    return FieldValues{
        {"GlazingID", id}, {"FileName", name}, {"Type", type}, {"Substrate_FileName", substrate}};
  };
  return {clear, pane(4, "COATED.DAT", "COATED", "clear.dat"),
          pane(5, "film.dat", "Applied film", "gone.dat"),
          pane(6, "stack.dat", "laminate", "Unknown"), pane(7, "mine.dat", "laminated", "N/A")};
}

/// Makes a database with the tables of the International Glazing Database at `path`, with panes of
/// these fields, the first their key, and for each three points of a spectrum, the longest
/// wavelength first.
inline std::shared_ptr<store::Connection> makeGlazingDatabase(
    const std::string& path, const std::vector<FieldValues>& panes = glazingPanes()) {
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
      changeTable(*dc, fmt::format("+SpectralData GlazingID={}, Wavelength={}, T={}, Rf={}, Rb={}",
                                   id, wavelength, wavelength / 4 + id / 100,
                                   wavelength / 8 + id / 100, wavelength / 16 + id / 100));
    }
  }
  return dc;
}

}  // namespace orv::test
