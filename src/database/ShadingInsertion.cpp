// Insertion of shadings.
#include "database/ORV_DatabaseInterface.h"
#include "database/RecordCommit.h"
#include "database/Recordsets.h"
#include "database/ShadingColumns.h"

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
    for (const ShadingIntegratedColumn& column : shadingIntegratedColumns()) {
      const auto field = findField(*rows, column.name);
      if (field) rows->setValue(*field, integrated.*column.member);
    }
  }
  rows->updateBatch();
  rows->close();
}

void insertSpectralRows(const ShadingDataClass& data, store::Connection& dc) {
  if (data.spectrum().empty()) return;
  auto rows = openBatch(dc, "Shading_spectral_data");
  for (const ShadingSpectralPoint& point : data.spectrum()) {
    rows->addNew();
    rows->setValue("Shading_ID", data.id());
    for (const ShadingSpectralColumn& column : shadingSpectralColumns()) {
      rows->setValue(column.name, point.*column.member);
    }
  }
  rows->updateBatch();
  rows->close();
}

}  // namespace

void ORV_DatabaseInterface::InsertShading(ShadingDataClass& data, store::Connection& dc) const {
  if (data.supplier().empty()) data.supplier("Unknown");
  if (data.group().empty()) data.group("Unknown");
  commitRecord(dc, [&] {
    const std::int32_t supplier = InsertSupplier(data.supplier(), dc);
    const std::int32_t group = InsertGroup(data.group(), dc);

    auto row = openUpdatable(dc, "Shading");
    row->addNew();
    data.id(row->value(kShadingKeyColumn).toLong());
    setShadingColumns(*row, data, {group, supplier});
    row->update();
    row->close();
    insertIntegratedRows(data, dc);
    insertSpectralRows(data, dc);
  });
}

}  // namespace orv::database
