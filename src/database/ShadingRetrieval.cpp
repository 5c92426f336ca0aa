// Shadings of ORV databases of versions 3.0.0 and 2.0.1.
#include <fmt/format.h>

#include <algorithm>

#include "database/Fields.h"
#include "database/Lookups.h"
#include "database/ORV_DatabaseInterface.h"
#include "database/Recordsets.h"
#include "database/ShadingColumns.h"
#include "model/Codes.h"
#include "model/IntegratedColumns.h"
#include "model/Text.h"

namespace orv::database {

namespace {

/// A field's value, Null where the record set has no such field.
store::Value fieldOrNull(const store::Recordset& row, const char* name) {
  const auto field = findField(row, name);
  return field ? row.value(*field) : store::Value();
}

/// Sets one property from a value that is not Null.
struct PropertyReader {
  ShadingDataClass& data;
  const store::Value& value;
  store::Connection& dc;

  void operator()(Property<double> ShadingDataClass::*member) const {
    (data.*member)(value.toDouble());
  }
  void operator()(Property<bool> ShadingDataClass::*member) const {
    (data.*member)(value.toBoolean());
  }
  void operator()(Property<std::int32_t> ShadingDataClass::*member) const {
    (data.*member)(value.toLong());
  }
  void operator()(Property<std::string> ShadingDataClass::*member) const {
    (data.*member)(value.toText());
  }
  /// As with panes, the group in the database is not taken over.
  void operator()(ShadingKey key) const {
    if (key == ShadingKey::supplier) data.supplier(SupplierNameById(value.toLong(), dc));
  }
};

bool hasTable(store::Connection& dc, const char* name) {
  const std::vector<std::string> tables = dc.tableNames();
  return std::any_of(tables.begin(), tables.end(),
                     [&](const std::string& table) { return equalIgnoringCase(table, name); });
}

/// Reads the rows of a shading from a detail table, none when the database has no such table.
template <class Row, class Columns>
std::vector<Row> readDetails(store::Connection& dc, const char* table, std::int32_t shadingId,
                             const char* order, const Columns& columns) {
  std::vector<Row> result;
  if (!hasTable(dc, table)) return result;
  auto rows = openSql(dc, fmt::format("SELECT * FROM {} WHERE Shading_id = {} ORDER BY {}", table,
                                      shadingId, order));
  for (; !rows->eof(); rows->moveNext()) {
    Row& row = result.emplace_back();
    for (const auto& column : columns) {
      row.*column.member = FieldToDouble(fieldOrNull(*rows, column.name));
    }
  }
  return result;
}

}  // namespace

ORV_DatabaseInterface::ShadingPtr ORV_DatabaseInterface::RetrieveShading(
    store::Connection& dc, std::int32_t Shading_id) const {
  auto row = openSql(dc, "SELECT * FROM Shading WHERE Shading_id = " + std::to_string(Shading_id));
  if (row->eof()) return nullptr;
  auto data = std::make_shared<ShadingDataClass>();
  data->id(Shading_id);
  data->group(std::string(kUnknown));
  data->supplier(std::string(kUnknown));
  for (const ShadingColumn& column : shadingColumns()) {
    const store::Value value = fieldOrNull(*row, column.name);
    if (!value.isNull()) std::visit(PropertyReader{*data, value, dc}, column.member);
  }
  data->integrated(readDetails<ShadingIntegratedData>(
      dc, "Shading_integrated_data_temp", Shading_id, "angle", kShadingIntegratedColumns));
  data->spectrum(readDetails<ShadingSpectralPoint>(dc, "Shading_spectral_data", Shading_id,
                                                   "wavelength", kShadingSpectralColumns));
  return data;
}

}  // namespace orv::database
