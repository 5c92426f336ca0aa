// Insertion and replacement of shadings.
#include "database/Lookups.h"
#include "database/MissingNames.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/RecordCommit.h"
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

bool ORV_DatabaseInterface::ReplaceShading(ShadingDataClass& data, store::Connection& dc) const {
  setMissingNames(data);
  const std::int32_t known = FindShading(data.name(), data.group(), dc);
  if (known == 0) {
    InsertShading(data, dc);
    return false;
  }
  data.id(known);
  dc.inOneCommit([&] {
    const ShadingKeys keys = keysOf(data, *this, dc);
    auto row = findRecord(dc, "Shading", kShadingKeyColumn, known);
    setShadingColumns(*row, data, keys);
    row->update();
    for (const char* table : {"Shading_integrated_data_temp", "Shading_spectral_data"}) {
      dc.deleteRows(table, "Shading_id = " + std::to_string(known));
    }
    insertIntegratedRows(data, dc);
    insertSpectralRows(data, dc);
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
