#include "bench/GlazingDatabase.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace orv::bench {

using store::ColumnType;

namespace {

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
  table.indexes = {{"PrimaryKey", {{"GlazingID"}, {"Wavelength"}}, true, true}};
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

}  // namespace

float sampleAt(int glazing, int place, int which) {
  return static_cast<float>(0.25 + 0.2 * std::sin(0.01 * place + glazing + which));
}

std::string fileNameOf(int glazing) {
  return fmt::format("PANE{:05}.DAT", glazing);
}

std::string productNameOf(int glazing) {
  return fmt::format("Product {}", glazing);
}

GlazingDatabase::GlazingDatabase(const std::string& path) {
  std::filesystem::remove(path);
  connection_ = store::Connection::create(path);
  connection_->inOneCommit([&] {
    for (const auto& table : {typesDesign(), propertiesDesign(), spectraDesign()}) {
      connection_->createTable(table);
    }
    connection_->createQuery(queryDesign());
    addTypes(*connection_);
  });
}

void GlazingDatabase::addProperties() {
  auto rows = connection_->openRecordset("GlazingProperties", store::CursorType::static_,
                                         store::LockType::optimistic);
  rows->addNew();
  rows->setValue("GlazingID", count_);
  rows->setValue("FileName", fileNameOf(count_));
  rows->setValue("NFRC_ID", 10000 + count_);
  rows->setValue("ProductName", productNameOf(count_));
  rows->setValue("Manufacturer", fmt::format("Maker {}", count_ % 97));
  rows->setValue("GlazingTypeID", 1);
  rows->setValue("Substrate_FileName", "N/A");
  rows->setValue("Acceptance", "#");
  rows->setValue("Thickness", static_cast<float>(3 + count_ % 10));
  rows->setValue("Conductivity", 1.0F);
  rows->setValue("ef", 0.84F);
  rows->setValue("eb", 0.84F);
  rows->setValue("Precalc_Tsol", 0.8F);
  rows->setValue("Precalc_Tvis", 0.9F);
  rows->update();
}

void GlazingDatabase::addCurve() {
  auto rows = connection_->openRecordset("SpectralData", store::CursorType::static_,
                                         store::LockType::batchOptimistic);
  for (int place = 0; place < kWavelengths; ++place) {
    rows->addNew();
    rows->setValue(0, count_);
    rows->setValue(1, wavelengthAt(place));
    for (int which = 0; which < 3; ++which) {
      rows->setValue(static_cast<std::size_t>(2 + which), sampleAt(count_, place, which));
    }
  }
  rows->updateBatch();
}

void GlazingDatabase::addGlazing() {
  connection_->inOneCommit([&] {
    ++count_;
    addProperties();
    addCurve();
  });
}

void GlazingDatabase::addGlazings(int count) {
  constexpr int kInACommit = 50;
  for (int done = 0; done < count;) {
    connection_->inOneCommit([&] {
      for (const int end = std::min(count, done + kInACommit); done < end; ++done) {
        addGlazing();
      }
    });
  }
}

}  // namespace orv::bench
