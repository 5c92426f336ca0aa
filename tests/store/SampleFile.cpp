#include "store/SampleFile.h"

#include <fmt/format.h>

#include <string>
#include <vector>

#include "store/Connection.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Database.h"

namespace orv::test {
namespace {

using enum store::ColumnType;

using namespace store;

using Rows = std::vector<std::vector<Value>>;

/// Makes a table with its rows, of one value a column. Gives the places of these.
std::vector<jet::RowId> makeTable(Connection& database, const TableInfo& design, const Rows& rows) {
  database.createTable(design);
  const auto table = database.database().table(design.name);
  std::vector<jet::RowId> places;
  for (const std::vector<Value>& row : rows) places.push_back(table->insert(row));
  return places;
}

/// A table of names with their keys.
void makeNames(Connection& database, const std::string& table, const std::string& column,
               const std::vector<std::string>& names) {
  Rows rows;
  for (const std::string& name : names) rows.push_back({Value(), name, Value()});
  makeTable(
      database,
      design(table, fmt::format("{0}ID longInteger auto, {0}Name text 40, Remark text 40", column),
             fmt::format("PrimaryKey primary unique: {}ID", column)),
      rows);
}

void makePanes(Connection& database) {
  Rows rows;
  for (int i = 1; i <= 40; ++i) {
    const Value group = i % 8 == 0 ? Value() : Value(i % 4 + 1);
    rows.push_back({Value(), fmt::format("pane{:02}.txt", i), 2 + i % 3, group, 4.0 + i, i % 2 == 0,
                    Value(), Value(Currency{3'000'000 + 50'000 * i}), Value(Date{45'000.25 + i})});
  }
  makeTable(
      database,
      design("Pane",
             "PaneID longInteger auto, name text 120, SupplierID longInteger, GroupID longInteger, "
             "thickness double, single_layer boolean, Info memo, price currency, measured dateTime",
             "PrimaryKey primary unique: PaneID; NameGroup: name, GroupID; Groups ignoreNulls: "
             "GroupID-; "
             "Thickness: thickness-; Measured unique: measured"),
      rows);
}

void makeSpectra(Connection& database) {
  Rows rows;
  for (int pane = 1; pane <= 40; ++pane) {
    for (int i = 0; i < 150; ++i) {
      rows.push_back({pane, i % 2 == 0 ? 0 : 60, 300.0 + 5 * i, i / 1000.0});
    }
  }
  makeTable(
      database,
      design("Pane_spectral_data",
             "PaneID longInteger, angle integer, wavelength double, transmission_outdoor double",
             "PaneAngle: PaneID, angle"),
      rows);
}

void makeFrames(Connection& database) {
  Bytes picture(20'000);
  for (std::size_t i = 0; i < picture.size(); ++i) {
    picture[i] = static_cast<std::uint8_t>(i * i >> 3);
  }
  makeTable(
      database,
      design("Frame",
             "FrameID longInteger auto, name text 50, width double, colour text 20, picture ole",
             "PrimaryKey primary unique: FrameID; Names: name"),
      {{Value(), "plain", 60.5, "white", Value()}, {Value(), "pictured", 80.0, Value(), picture}});
}

/// Rows that no longer fit where they were.
void makeMovedRows(Connection& database) {
  Rows rows;
  for (int i = 0; i < 120; ++i) rows.push_back({i, std::string(40, 'm')});
  const auto places = makeTable(database, design("Moved", "A longInteger, B text 250"), rows);
  const auto table = database.database().table("Moved");
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
  const auto places = makeTable(database, allTypes(), rows);
  database.database().table("All types")->erase(places.back());
}

}  // namespace

TableInfo allTypes() {
  return design("All types",
                "ID longInteger auto, Flag boolean, Tiny byte, Small integer =7, Price currency, "
                "Single single, Double double, When dateTime, Key binary 20, "
                "Name text 50 required filled =\"Unknown\", Picture ole, Remark memo, Guid guid, "
                "Decimal numeric 10.2",
                "PrimaryKey primary: ID; ByName unique: Name-, Small; ByRemark: Remark");
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
              design("Shading", "ShadingID longInteger, name text 50",
                     "PrimaryKey primary unique: ShadingID"),
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
