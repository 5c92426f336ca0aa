#include "store/SampleFile.h"

#include <fmt/format.h>

#include <functional>
#include <string>
#include <vector>

#include "store/Connection.h"
#include "store/jet/catalog/Database.h"

namespace orv::test {
namespace {

using enum store::ColumnType;

using store::jet::RowId;
using namespace store;

using Rows = std::vector<std::vector<Value>>;

/// Makes a table with its rows, of one value a column.
void makeTable(Connection& database, const TableInfo& design, const Rows& rows) {
  database.createTable(design);
  const auto table = database.database().table(design.name);
  for (const std::vector<Value>& row : rows) table->insert(row);
}

IndexInfo primaryKey(const std::string& column) {
  return {"PrimaryKey", {{column}}, true, true};
}

/// A table of names with their keys.
void makeNames(Connection& database, const std::string& table, const std::string& column,
               const std::vector<std::string>& names) {
  Rows rows;
  for (const std::string& name : names) rows.push_back({Value(), name, Value()});
  makeTable(database,
            {table,
             {{.name = column + "ID", .type = longInteger, .autoNumber = true},
              {.name = column + "Name", .size = 40},
              {.name = "Remark", .size = 40}},
             {primaryKey(column + "ID")}},
            rows);
}

void makePanes(Connection& database) {
  Rows rows;
  for (int i = 1; i <= 40; ++i) {
    const Value group = i % 8 == 0 ? Value() : Value(i % 4 + 1);
    rows.push_back({Value(), fmt::format("pane{:02}.txt", i), 2 + i % 3, group, 4.0 + i, i % 2 == 0,
                    Value(), Value(Currency{3'000'000 + 50'000 * i}), Value(Date{45'000.25 + i})});
  }
  makeTable(database,
            {"Pane",
             {{.name = "PaneID", .type = longInteger, .autoNumber = true},
              {.name = "name", .size = 120},
              {.name = "SupplierID", .type = longInteger},
              {.name = "GroupID", .type = longInteger},
              {.name = "thickness", .type = double_},
              {.name = "single_layer", .type = boolean},
              {.name = "Info", .type = memo},
              {.name = "price", .type = currency},
              {.name = "measured", .type = dateTime}},
             {primaryKey("PaneID"),
              {"NameGroup", {{"name"}, {"GroupID"}}},
              {"Groups", {{"GroupID", false}}, false, false, true},
              {"Thickness", {{"thickness", false}}},
              {"Measured", {{"measured"}}, false, true}}},
            rows);
}

void makeSpectra(Connection& database) {
  Rows rows;
  for (int pane = 1; pane <= 40; ++pane) {
    for (int i = 0; i < 150; ++i) {
      rows.push_back({pane, i % 2 == 0 ? 0 : 60, 300.0 + 5 * i, i / 1000.0});
    }
  }
  makeTable(database,
            {"Pane_spectral_data",
             {{.name = "PaneID", .type = longInteger},
              {.name = "angle", .type = integer},
              {.name = "wavelength", .type = double_},
              {.name = "transmission_outdoor", .type = double_}},
             {{"PaneAngle", {{"PaneID"}, {"angle"}}}}},
            rows);
}

void makeFrames(Connection& database) {
  Bytes picture(20'000);
  for (std::size_t i = 0; i < picture.size(); ++i) {
    picture[i] = static_cast<std::uint8_t>(i * i >> 3);
  }
  makeTable(
      database,
      {"Frame",
       {{.name = "FrameID", .type = longInteger, .autoNumber = true},
        {.name = "name", .size = 50},
        {.name = "width", .type = double_},
        {.name = "colour", .size = 20},
        {.name = "picture", .type = ole}},
       {primaryKey("FrameID"), {"Names", {{"name"}}}}},
      {{Value(), "plain", 60.5, "white", Value()}, {Value(), "pictured", 80.0, Value(), picture}});
}

/// Rows that no longer fit where they were.
void makeMovedRows(Connection& database) {
  makeTable(database, {"Moved", {{.name = "A", .type = longInteger}, {.name = "B", .size = 250}}},
            {});
  const auto table = database.database().table("Moved");
  std::vector<jet::RowId> places;
  for (int i = 0; i < 120; ++i) {
    places.push_back(table->insert(std::vector<Value>{i, std::string(40, 'm')}));
  }
  for (int i = 0; i < 120; i += 10) {
    table->update(places[static_cast<std::size_t>(i)],
                  std::vector<Value>{i, std::string(240, 'M')});
  }
}

/// Rows of every type, some with Nulls, of which the last has gone.
void makeAllTypes(Connection& database) {
  Rows rows;
  for (int i = 0; i < 31; ++i) {
    std::vector<Value> row = rowOfAllTypes(i);
    for (std::size_t at = 2; i % 4 == 3 && at < row.size(); ++at) {
      if (at != 9) row[at] = Value();
    }
    rows.push_back(std::move(row));
  }
  makeTable(database, allTypes(), rows);
  const auto table = database.database().table("All types");
  jet::RowId last{};
  for (jet::TableScan scan = table->scan(); scan.next();) last = scan.rowId();
  table->erase(last);
}

}  // namespace

TableInfo allTypes() {
  return {.name = "All types",
          .columns = {{.name = "ID", .type = longInteger, .autoNumber = true},
                      {.name = "Flag", .type = boolean},
                      {.name = "Tiny", .type = byte},
                      {.name = "Small", .type = integer, .defaultValue = "7"},
                      {.name = "Price", .type = currency},
                      {.name = "Single", .type = single},
                      {.name = "Double", .type = double_},
                      {.name = "When", .type = dateTime},
                      {.name = "Key", .type = binary, .size = 20},
                      {.name = "Name",
                       .type = text,
                       .size = 50,
                       .required = true,
                       .allowZeroLength = false,
                       .defaultValue = "\"Unknown\""},
                      {.name = "Picture", .type = ole},
                      {.name = "Remark", .type = memo},
                      {.name = "Guid", .type = guid},
                      {.name = "Decimal", .type = numeric, .precision = 10, .scale = 2}},
          .indexes = {{.name = "PrimaryKey", .columns = {{"ID"}}, .primary = true},
                      {.name = "ByName", .columns = {{"Name", false}, {"Small"}}, .unique = true},
                      {.name = "ByRemark", .columns = {{"Remark"}}}}};
}

std::vector<Value> rowOfAllTypes(int i) {
  Guid guid;
  guid.bytes.fill(static_cast<std::uint8_t>(i));
  return {std::int32_t{i + 1},
          i % 2 == 0,
          std::int32_t{i % 256},
          std::int32_t{i - 100},
          Currency{i * 12345},
          static_cast<float>(i) / 3,
          i / 7.0,
          Date{40000 + i / 24.0},
          Bytes(static_cast<std::size_t>(i % 20), 7),
          fmt::format("Näme {}", i),
          Bytes(static_cast<std::size_t>(i * 90), 9),
          std::string(static_cast<std::size_t>(i * 40), 'x'),
          guid,
          Decimal::fromText(fmt::format("{}.25", i), 10, 2)};
}

void makeSampleFile(const std::filesystem::path& path) {
  Connection::create(path.string(), [](Connection& database) {
    makeNames(database, "Groups", "Group", {"Unknown", "Clear", "Coated", "Tinted"});
    makeNames(database, "Suppliers", "Supplier", {"Unknown", "Glasbau", "Verre & Fils"});
    makeNames(database, "FrameTypes", "FrameType", {"Unknown", "Wood", "Aluminium"});
    makeTable(database,
              {"Shading",
               {{.name = "ShadingID", .type = longInteger}, {.name = "name", .size = 50}},
               {primaryKey("ShadingID")}},
              {});
    makePanes(database);
    makeSpectra(database);
    makeFrames(database);
    makeMovedRows(database);
    makeAllTypes(database);
    database.createQuery(
        {.name = "qryPanes",
         .outputs = {{"Pane.name"}, {"Groups.GroupName", "grp"}},
         .tables = {"Pane", "Groups"},
         .joins = {{JoinKind::left, "Pane", "Groups", "Pane.GroupID = Groups.GroupID"}},
         .where = "Pane.thickness > 5",
         .orderBy = {{"Pane.name", true}}});
  });
}

}  // namespace orv::test
