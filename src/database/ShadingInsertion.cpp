// Insertion and replacement of shadings.
#include <span>

#include "database/DetailReplacement.h"
#include "database/Fields.h"
#include "database/Lookups.h"
#include "database/MissingNames.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/RecordCommit.h"
#include "database/RowUpdate.h"
#include "database/Rows.h"
#include "database/ShadingColumns.h"
#include "model/IntegratedColumns.h"

namespace orv::database {

namespace {

struct ShadingKeys {
  std::int32_t group;
  std::int32_t supplier;
};

/// The value of a column.
struct ColumnValue {
  const ShadingDataClass& data;
  const ShadingKeys& keys;
  store::Value operator()(ShadingKey key) const {
    return key == ShadingKey::group ? keys.group : keys.supplier;
  }
  template <class T>
  store::Value operator()(Property<T> ShadingDataClass::*member) const {
    return (data.*member)();
  }
};

void setShadingColumns(store::Recordset& row, const ShadingDataClass& data,
                       const ShadingKeys& keys) {
  for (const ShadingColumn& column : shadingColumns()) {
    row.setValue(column.name, std::visit(ColumnValue{data, keys}, column.member));
  }
}

/// Tables of other makers may hold fewer integrated values; those that they lack are left out.
void insertIntegratedRows(const ShadingDataClass& data, store::Connection& dc) {
  if (data.integrated().empty()) return;
  auto rows = openBatch(dc, "Shading_integrated_data_temp");
  for (const ShadingIntegratedData& integrated : data.integrated()) {
    rows->addNew();
    rows->setValue("Shading_id", data.id());
    for (const ShadingIntegratedColumn& column : kShadingIntegratedColumns) {
      const auto field = findField(*rows, column.name);
      if (field) rows->setValue(*field, integrated.*column.member);
    }
  }
  rows->updateBatch();
}

void insertSpectralRows(const ShadingDataClass& data, store::Connection& dc) {
  if (data.spectrum().empty()) return;
  auto rows = openBatch(dc, "Shading_spectral_data");
  for (const ShadingSpectralPoint& point : data.spectrum()) {
    rows->addNew();
    rows->setValue("Shading_ID", data.id());
    for (const ShadingSpectralColumn& column : kShadingSpectralColumns) {
      rows->setValue(column.name, point.*column.member);
    }
  }
  rows->updateBatch();
}

ShadingKeys keysOf(const ShadingDataClass& shading, const ORV_DatabaseInterface& database,
                   store::Connection& dc) {
  const std::int32_t supplier = database.InsertSupplier(shading.supplier(), dc);
  return {.group = database.InsertGroup(shading.group(), dc), .supplier = supplier};
}

/// The group, by which the shading was found, stays.
void replaceShadingRow(const ShadingDataClass& data, const Replacement& how,
                       const ORV_DatabaseInterface& database, store::Connection& dc) {
  auto row = findRecord(dc, "Shading", kShadingKeyColumn, data.id());
  RowUpdate update(*row, "Shading", how);
  for (const ShadingColumn& column : shadingColumns()) {
    const auto* key = std::get_if<ShadingKey>(&column.member);
    if (key == nullptr) {
      update.set(column.name, std::visit(ColumnValue{data, {}}, column.member),
                 isShadingCode(column));
    } else if (*key == ShadingKey::supplier &&
               update.isOther(column.name,
                              SupplierNameById(FieldToLong(row->value(column.name)), dc),
                              data.supplier())) {
      update.set(column.name, database.InsertSupplier(data.supplier(), dc), true);
    }
  }
  update.store();
}

std::string conditionOf(const ShadingDataClass& data) {
  return "Shading_id = " + std::to_string(data.id());
}

Details integratedDetails(const ShadingDataClass& data) {
  Details details{.table = "Shading_integrated_data_temp",
                  .condition = conditionOf(data),
                  .place = "angle",
                  .columns = {},
                  .keys = {{"Shading_id", data.id()}},
                  .rows = {}};
  for (const IntegratedColumn& column : kIntegratedColumns) {
    details.columns.emplace_back(column.column);
  }
  for (const ShadingIntegratedData& at : data.integrated()) {
    DetailRow& row = details.rows.emplace_back();
    row.place = at.angle;
    for (const IntegratedColumn& column : kIntegratedColumns) {
      row.values.emplace_back(at.*column.shading);
    }
  }
  return details;
}

Details spectralDetails(const ShadingDataClass& data) {
  Details details{.table = "Shading_spectral_data",
                  .condition = conditionOf(data),
                  .place = kShadingSpectralColumns.front().name,
                  .columns = {},
                  .keys = {{"Shading_ID", data.id()}},
                  .rows = {}};
  const auto curves = std::span(kShadingSpectralColumns).subspan(1);
  for (const ShadingSpectralColumn& column : curves) details.columns.emplace_back(column.name);
  for (const ShadingSpectralPoint& point : data.spectrum()) {
    DetailRow& row = details.rows.emplace_back();
    row.place = point.wavelength;
    for (const ShadingSpectralColumn& column : curves) {
      row.values.emplace_back(point.*column.member);
    }
  }
  return details;
}

}  // namespace

void ORV_DatabaseInterface::InsertShading(ShadingDataClass& data, store::Connection& dc) const {
  setMissingNames(data);
  commitRecord(dc, [&] {
    const ShadingKeys keys = keysOf(data, *this, dc);
    auto row = openUpdatable(dc, "Shading");
    row->addNew();
    data.id(row->value(kShadingKeyColumn).toLong());
    setShadingColumns(*row, data, keys);
    row->update();
    insertIntegratedRows(data, dc);
    insertSpectralRows(data, dc);
  });
}

bool ORV_DatabaseInterface::ReplaceShading(ShadingDataClass& data, const Replacement& how,
                                           store::Connection& dc) const {
  setMissingNames(data);
  const std::int32_t known = how.key != 0 ? how.key : FindShading(data.name(), data.group(), dc);
  if (known == 0) {
    InsertShading(data, dc);
    return false;
  }
  data.id(known);
  dc.inOneCommit([&] {
    replaceShadingRow(data, how, *this, dc);
    replaceDetails(integratedDetails(data), how, dc);
    replaceDetails(spectralDetails(data), how, dc);
  });
  return true;
}

std::int32_t ORV_DatabaseInterface::FindShading(const std::string& name, const std::string& group,
                                                store::Connection& dc) const {
  auto row = openSql(dc, "SELECT Shading_id FROM Shading WHERE name = " + quoted(name) +
                             " AND groupnameID = " + std::to_string(GroupIdByName(group, dc)) +
                             " ORDER BY Shading_id");
  return row->eof() ? 0 : row->value(kShadingKeyColumn).toLong();
}

}  // namespace orv::database
