#include "database/OrvSchema.h"

#include "database/ShadingColumns.h"
#include "model/IntegratedColumns.h"

namespace orv::database {

using store::ColumnInfo;
using store::ColumnType;
using store::IndexInfo;
using store::JoinKind;
using store::QueryDesign;
using store::TableInfo;

namespace {

/// Longest text that a text column of the file format can hold.
constexpr std::size_t kNameLength = 255;
constexpr std::size_t kVersionLength = 20;
constexpr std::size_t kCoatingCodeLength = 50;
constexpr std::size_t kAcceptanceLength = 20;

ColumnInfo column(std::string name, ColumnType type, std::size_t size = 0) {
  ColumnInfo info;
  info.name = std::move(name);
  info.type = type;
  info.size = size;
  return info;
}

ColumnInfo key(std::string name) {
  ColumnInfo info = column(std::move(name), ColumnType::longInteger);
  info.autoNumber = true;
  return info;
}

ColumnInfo text(std::string name, std::size_t size = kNameLength) {
  return column(std::move(name), ColumnType::text, size);
}

/// A number that records hold in single precision.
ColumnInfo single(std::string name) {
  return column(std::move(name), ColumnType::single);
}
ColumnInfo number(std::string name) {
  return column(std::move(name), ColumnType::double_);
}
ColumnInfo integer(std::string name) {
  return column(std::move(name), ColumnType::integer);
}
ColumnInfo memo(std::string name) {
  return column(std::move(name), ColumnType::memo);
}

/// A key of another table's row.
ColumnInfo reference(std::string name) {
  return column(std::move(name), ColumnType::longInteger);
}

ColumnInfo withZeroDefault(ColumnInfo info) {
  info.defaultValue = "0";
  return info;
}

ColumnInfo flag(std::string name) {
  return withZeroDefault(column(std::move(name), ColumnType::boolean));
}

IndexInfo primaryKey(std::string columnName) {
  IndexInfo info;
  info.name = "PrimaryKey";
  info.columns = {{std::move(columnName)}};
  info.primary = true;
  info.required = true;
  return info;
}

IndexInfo index(std::string name, const std::vector<std::string>& columnNames) {
  IndexInfo info;
  info.name = std::move(name);
  for (const std::string& columnName : columnNames) info.columns.push_back({columnName});
  return info;
}

void append(std::vector<ColumnInfo>& columns, ColumnInfo (*make)(std::string),
            std::initializer_list<const char*> names) {
  for (const char* name : names) columns.push_back(make(name));
}

TableInfo versionTable() {
  TableInfo table;
  table.name = "ORVdata_version";
  table.columns = {text("version", kVersionLength)};
  return table;
}

/// A table that gives keys to names: groups, suppliers, frame types.
TableInfo lookupTable(const std::string& name, const std::string& keyColumn,
                      const std::string& nameColumn) {
  TableInfo table;
  table.name = name;
  table.columns = {key(keyColumn), text(nameColumn)};
  table.indexes = {primaryKey(keyColumn), index(nameColumn, {nameColumn})};
  return table;
}

TableInfo paneTable() {
  TableInfo table;
  table.name = "Pane";
  table.columns = {key("PaneID"), text("name"), text("product_name"), reference("supplierID"),
                   reference("groupID")};
  append(table.columns, single, {"thickness", "conduction"});
  append(table.columns, number, {"emission_IR_outdoor", "emission_IR_indoor"});
  append(table.columns, single, {"transmission_IR_outdoor", "transmission_IR_indoor"});
  append(table.columns, flag,
         {"single_layer", "use_estimation", "0_30_60", "spectral_pane", "film_outdoor_side",
          "with_and_without_film"});
  table.columns.push_back(withZeroDefault(integer("Ra")));
  table.columns.push_back(memo("info"));
  table.columns.push_back(flag("freeze"));
  table.columns.push_back(text("coatingcode", kCoatingCodeLength));
  table.columns.push_back(text("acceptance", kAcceptanceLength));
  table.indexes = {primaryKey("PaneID"), index("NameGroup", {"name", "groupID"})};
  return table;
}

TableInfo paneSpectralTable() {
  TableInfo table;
  table.name = "Pane_spectral_data";
  table.columns = {reference("PaneID"), integer("angle"), withZeroDefault(integer("direction"))};
  append(table.columns, single,
         {"wavelength", "transmission_outdoor", "reflection_outdoor", "reflection_indoor",
          "transmission_sub", "reflection_sub"});
  table.indexes = {index("PaneAngle", {"PaneID", "angle"})};
  return table;
}

TableInfo paneIntegratedTable() {
  TableInfo table;
  table.name = "Pane_integrated_data";
  table.columns = {reference("PaneID"), integer("angle")};
  for (const IntegratedColumn& value : kIntegratedColumns) {
    table.columns.push_back(single(value.column));
  }
  table.indexes = {index("PaneAngle", {"PaneID", "angle"})};
  return table;
}

/// Column of the type that fits a property of a shading.
ColumnInfo shadingColumn(const ShadingColumn& design) {
  struct Maker {
    std::string name;
    ColumnInfo operator()(Property<double> ShadingDataClass::*) const { return number(name); }
    ColumnInfo operator()(Property<bool> ShadingDataClass::*) const { return flag(name); }
    ColumnInfo operator()(Property<std::int32_t> ShadingDataClass::*) const {
      return column(name, ColumnType::longInteger);
    }
    ColumnInfo operator()(Property<std::string> ShadingDataClass::*member) const {
      return member == &ShadingDataClass::Info ? memo(name) : text(name);
    }
    ColumnInfo operator()(ShadingKey) const { return reference(name); }
  };
  return std::visit(Maker{design.name}, design.member);
}

TableInfo shadingTable() {
  TableInfo table;
  table.name = "Shading";
  table.columns = {key(kShadingKeyColumn)};
  for (const ShadingColumn& design : shadingColumns()) {
    table.columns.push_back(shadingColumn(design));
  }
  table.indexes = {primaryKey(kShadingKeyColumn), index("NameGroup", {"name", "groupnameID"})};
  return table;
}

TableInfo shadingIntegratedTable() {
  TableInfo table;
  table.name = "Shading_integrated_data_temp";
  table.columns = {reference("Shading_id")};
  for (const auto& design : kShadingIntegratedColumns) {
    table.columns.push_back(number(design.name));
  }
  table.indexes = {index("Shading_id", {"Shading_id"})};
  return table;
}

TableInfo shadingSpectralTable() {
  TableInfo table;
  table.name = "Shading_spectral_data";
  table.columns = {reference("Shading_ID")};
  for (const auto& design : kShadingSpectralColumns) {
    table.columns.push_back(number(design.name));
  }
  table.indexes = {index("Shading_ID", {"Shading_ID"})};
  return table;
}

TableInfo frameTable() {
  TableInfo table;
  table.name = "Frame";
  table.columns = {key("FrameID"),           text("name"),
                   text("product_name"),     reference("groupID"),
                   reference("supplierID"),  number("u_value"),
                   reference("FrameTypeID"), column("picture", ColumnType::ole),
                   number("width"),          memo("Info")};
  table.indexes = {primaryKey("FrameID"), index("NameGroup", {"name", "groupID"})};
  return table;
}

QueryDesign::Join leftJoin(const std::string& left, const std::string& leftColumn,
                           const std::string& right, const std::string& rightColumn) {
  return {JoinKind::left, left, right, left + "." + leftColumn + " = " + right + "." + rightColumn};
}

std::vector<QueryDesign::Output> outputs(std::initializer_list<const char*> expressions) {
  std::vector<QueryDesign::Output> result;
  for (const char* expression : expressions) result.push_back({expression});
  return result;
}

QueryDesign paneQuery() {
  QueryDesign query;
  query.name = "qryPaneImport";
  query.outputs = outputs(
      {"Pane.PaneID", "Pane.name", "Pane.product_name", "Groups.GroupName",
       "Suppliers.SupplierName", "Pane.thickness", "Pane.conduction", "Pane.emission_IR_outdoor",
       "Pane.emission_IR_indoor", "Pane.transmission_IR_outdoor", "Pane.transmission_IR_indoor",
       "Pane.coatingcode", "Pane.spectral_pane", "Pane.acceptance", "Pane.info"});
  query.tables = {"Pane", "Groups", "Suppliers"};
  query.joins = {leftJoin("Pane", "groupID", "Groups", "GroupID"),
                 leftJoin("Pane", "supplierID", "Suppliers", "supplierID")};
  query.orderBy = {{"Pane.name"}};
  return query;
}

QueryDesign frameQuery() {
  QueryDesign query;
  query.name = "qryFrameImport";
  query.outputs = outputs({"Frame.FrameID", "Frame.name", "Frame.product_name", "Groups.GroupName",
                           "Suppliers.SupplierName", "FrameTypes.FrameTypeName", "Frame.u_value",
                           "Frame.width", "Frame.Info"});
  query.tables = {"Frame", "Groups", "Suppliers", "FrameTypes"};
  query.joins = {leftJoin("Frame", "groupID", "Groups", "GroupID"),
                 leftJoin("Frame", "supplierID", "Suppliers", "supplierID"),
                 leftJoin("Frame", "FrameTypeID", "FrameTypes", "FrameTypeID")};
  query.orderBy = {{"Frame.name"}};
  return query;
}

QueryDesign shadingQuery() {
  QueryDesign query;
  query.name = "qryShadingImport";
  query.outputs =
      outputs({"Shading.Shading_id", "Shading.name", "Shading.productname", "Groups.GroupName",
               "Suppliers.SupplierName", "Shading.typeID", "Shading.thickness",
               "Shading.conduction", "Shading.slat_length", "Shading.slat_distance",
               "Shading.angle", "Shading.permeability", "Shading.appearance", "Shading.Info"});
  query.tables = {"Shading", "Groups", "Suppliers"};
  query.joins = {leftJoin("Shading", "groupnameID", "Groups", "GroupID"),
                 leftJoin("Shading", "supplierID", "Suppliers", "supplierID")};
  query.orderBy = {{"Shading.name"}};
  return query;
}

void fill(store::Connection& connection) {
  for (const TableInfo& table : orvTables()) connection.createTable(table);
  for (const QueryDesign& query : orvQueries()) connection.createQuery(query);
  auto version = connection.openRecordset("ORVdata_version", store::CursorType::dynamic,
                                          store::LockType::optimistic, store::SourceKind::table);
  version->addNew();
  version->setValue("version", kVersion3);
  version->update();
}

}  // namespace

std::vector<TableInfo> orvTables() {
  return {versionTable(),
          lookupTable("Groups", "GroupID", "GroupName"),
          lookupTable("Suppliers", "supplierID", "SupplierName"),
          lookupTable("FrameTypes", "FrameTypeID", "FrameTypeName"),
          paneTable(),
          paneIntegratedTable(),
          paneSpectralTable(),
          frameTable(),
          shadingTable(),
          shadingIntegratedTable(),
          shadingSpectralTable()};
}

std::vector<QueryDesign> orvQueries() {
  return {paneQuery(), frameQuery(), shadingQuery()};
}

std::shared_ptr<store::Connection> CreateEmptyDatabase(const std::string& path) {
  return store::Connection::create(path, fill);
}

}  // namespace orv::database
