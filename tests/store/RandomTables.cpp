#include "store/RandomTables.h"

#include "store/ForeignForms.h"
#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"

namespace orv::test {
namespace {

using namespace store;
using namespace store::jet;
using enum ColumnType;

/// Columns of every type, each but the picture with an index of its own in one direction.
TableInfo everyType(const std::string& name, bool ascending) {
  TableInfo table = design(
      name,
      "id longInteger auto, flag boolean, tiny byte, small integer, large longInteger, "
      "amount currency, rough single, fine double, moment dateTime, code binary 20, guid guid, "
      "exact numeric 15.4, title text 255, title2010 text 60, note memo, picture ole",
      "PrimaryKey primary: id");
  for (std::size_t i = 1; i + 1 < table.columns.size(); ++i) {
    const std::string& column = table.columns[i].name;
    table.indexes.push_back(
        {.name = column + "Index", .columns = {{column, ascending}}, .ignoreNulls = i % 3 == 0});
  }
  return table;
}

/// Keys over several columns, and columns that refuse values.
TableInfo keysTable() {
  return design(
      "Keys",
      "name text 40 required, day dateTime, number longInteger, amount currency, tiny byte, "
      "exact numeric 15.4, title text 80 filled, title2010 text 40, flag boolean, rough single, "
      "note memo",
      "PrimaryKey primary: name, day-, number; price unique: amount-, tiny; "
      "exactly unique ignoreNulls: exact; titled required: title-; mixed: flag, title2010, rough-");
}

/// Of which the columns `title2010` sort as since Access 2010.
std::shared_ptr<Database> makeDatabase(const std::string& path) {
  return createDatabase(path, [](const std::shared_ptr<Database>& database) {
    for (const TableInfo& table :
         {everyType("Ascending", true), everyType("Descending", false), keysTable()}) {
      createTable(*database, table);
      const auto made = database->table(table.name);
      const std::size_t column = *made->definition().findColumn("title2010");
      changeColumn(*made, column, kJet4.column.sortVersion, std::uint8_t{1});
    }
  });
}

}  // namespace

RandomTables::RandomTables(const std::string& path, unsigned seed)
    : RandomChanges(path, "", makeDatabase(path), seed, 6000) {}

}  // namespace orv::test
