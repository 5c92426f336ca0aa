#include "bench/GlazingDatabase.h"

#include <fmt/format.h>

#include <cmath>

#include "store/Connection.h"

namespace orv::bench {

using store::ColumnType;

namespace {

constexpr int kWavelengths = 420;

store::TableInfo propertiesDesign() {
  store::TableInfo table;
  table.name = "GlazingProperties";
  table.columns = {
      {"GlazingID", ColumnType::longInteger},        {"FileName", ColumnType::text, 200},
      {"NFRC_ID", ColumnType::longInteger},          {"ProductName", ColumnType::text, 200},
      {"Manufacturer", ColumnType::text, 200},       {"GlazingTypeID", ColumnType::longInteger},
      {"Substrate_FileName", ColumnType::text, 200}, {"Acceptance", ColumnType::text, 20},
      {"Appearance", ColumnType::text, 200}};
  for (const char* name :
       {"Thickness", "Conductivity", "TIR", "ef", "eb", "Precalc_Rfsol", "Precalc_Rbsol",
        "Precalc_Tsol", "Precalc_Rfvis", "Precalc_Rbvis", "Precalc_Tvis", "Precalc_Tuv"}) {
    table.columns.push_back({name, ColumnType::single});
  }
  table.indexes = {{"PrimaryKey", {{"GlazingID"}}, true, true},
                   {"FileName", {{"FileName"}}, false, true}};
  return table;
}

store::TableInfo typesDesign() {
  store::TableInfo table;
  table.name = "GlazingTypes";
  table.columns = {{"GlazingTypeID", ColumnType::longInteger}, {"Type", ColumnType::text, 100}};
  table.indexes = {{"PrimaryKey", {{"GlazingTypeID"}}, true, true}};
  return table;
}

store::TableInfo spectraDesign() {
  store::TableInfo table;
  table.name = "SpectralData";
  table.columns = {{"GlazingID", ColumnType::longInteger},
                   {"Wavelength", ColumnType::single},
                   {"T", ColumnType::single},
                   {"Rf", ColumnType::single},
                   {"Rb", ColumnType::single}};
  table.indexes = {{"GlazingID", {{"GlazingID"}}}};
  return table;
}

store::QueryDesign queryDesign() {
  store::QueryDesign query;
  query.name = "qryOptics5Grid";
  for (const char* name : {"GlazingID", "FileName", "Thickness", "ProductName", "Conductivity",
                           "ef", "eb", "TIR", "Substrate_FileName", "Manufacturer", "Acceptance"}) {
    query.outputs.push_back({fmt::format("GlazingProperties.{}", name)});
  }
  query.outputs.push_back({"GlazingTypes.Type"});
  query.tables = {"GlazingTypes", "GlazingProperties"};
  query.joins = {{store::JoinKind::inner, "GlazingTypes", "GlazingProperties",
                  "GlazingTypes.GlazingTypeID = GlazingProperties.GlazingTypeID"}};
  query.orderBy = {{"GlazingProperties.FileName"}};
  return query;
}

void addTypes(store::Connection& database) {
  auto rows = database.openRecordset("GlazingTypes", store::CursorType::dynamic,
                                     store::LockType::optimistic);
  int id = 0;
  for (const char* type : {"Monolithic", "Coated", "Applied Film", "Laminate"}) {
    rows->addNew();
    rows->setValue("GlazingTypeID", ++id);
    rows->setValue("Type", type);
    rows->update();
  }
}

void addProperties(store::Recordset& rows, int id) {
  rows.addNew();
  rows.setValue("GlazingID", id);
  rows.setValue("FileName", fmt::format("PANE{:05}.DAT", id));
  rows.setValue("NFRC_ID", 10000 + id);
  rows.setValue("ProductName", fmt::format("Product {}", id));
  rows.setValue("Manufacturer", fmt::format("Maker {}", id % 97));
  rows.setValue("GlazingTypeID", 1);
  rows.setValue("Substrate_FileName", "N/A");
  rows.setValue("Acceptance", "#");
  rows.setValue("Thickness", static_cast<float>(3 + id % 10));
  rows.setValue("Conductivity", 1.0F);
  rows.setValue("ef", 0.84F);
  rows.setValue("eb", 0.84F);
  rows.setValue("Precalc_Tsol", 0.8F);
  rows.setValue("Precalc_Tvis", 0.9F);
  rows.update();
}

void addSpectrum(store::Recordset& rows, int id) {
  for (int i = 0; i < kWavelengths; ++i) {
    rows.addNew();
    rows.setValue("GlazingID", id);
    rows.setValue("Wavelength", 0.3F + 0.005F * static_cast<float>(i));
    rows.setValue("T", static_cast<float>(0.5 + 0.4 * std::sin(0.01 * (i + id))));
    rows.setValue("Rf", 0.05F);
    rows.setValue("Rb", 0.06F);
    rows.update();
  }
  rows.updateBatch();
}

}  // namespace

void makeGlazingDatabase(const std::string& path, int glazings) {
  const auto database = store::Connection::create(path);
  database->inOneCommit([&] {
    for (const auto& table : {typesDesign(), propertiesDesign(), spectraDesign()}) {
      database->createTable(table);
    }
    database->createQuery(queryDesign());
    addTypes(*database);
  });
  auto properties = database->openRecordset("GlazingProperties", store::CursorType::static_,
                                            store::LockType::batchOptimistic);
  auto spectra = database->openRecordset("SpectralData", store::CursorType::static_,
                                         store::LockType::batchOptimistic);
  for (int id = 1; id <= glazings; ++id) {
    addProperties(*properties, id);
    addSpectrum(*spectra, id);
  }
  properties->updateBatch();
}

}  // namespace orv::bench
