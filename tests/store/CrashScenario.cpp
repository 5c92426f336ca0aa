#include "store/CrashScenario.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "store/TableDesign.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/index/IndexKey.h"

namespace orv::test {
namespace {

using namespace store;
using namespace store::jet;
using enum ColumnType;

TableInfo notesTable(const std::string& name) {
  return design(name, "id longInteger, title text 100, note memo, picture ole",
                "PrimaryKey primary: id; title: title, id-");
}

std::vector<Value> note(int id, std::size_t noteLength = 0, std::size_t pictureLength = 0) {
  return {id, fmt::format("note {} of those that are kept in this table", id * 7919 % 1000),
          noteLength == 0 ? Value() : Value(std::string(noteLength, 'n')),
          pictureLength == 0 ? Value() : Value(Bytes(pictureLength, 0x7e))};
}

void insert(Database& database, const char* table, int from, int to, std::size_t noteLength = 0,
            std::size_t pictureLength = 0) {
  Transaction all(database.pager());
  const auto target = database.table(table);
  for (int id = from; id < to; ++id) target->insert(note(id, noteLength, pictureLength));
  all.commit();
}

std::vector<RowId> rowsWhere(const Table& table, const std::function<bool(int)>& isMeant) {
  std::vector<RowId> rows;
  for (TableScan scan = table.scan(); scan.next();) {
    if (isMeant(scan.row().value(table.definition().columns[0]).toLong())) {
      rows.push_back(scan.rowId());
    }
  }
  return rows;
}

/// Deletes the rows whose number `isDoomed`.
void erase(Database& database, const char* table, const std::function<bool(int)>& isDoomed) {
  Transaction all(database.pager());
  const auto target = database.table(table);
  for (const RowId row : rowsWhere(*target, isDoomed)) target->erase(row);
  all.commit();
}

void update(Database& database, const char* table, int id, const std::vector<Value>& values) {
  const auto target = database.table(table);
  const auto rows = rowsWhere(*target, [&](int each) { return each == id; });
  target->update(rows.at(0), values);
}

void makeNotes(const std::string& path, int rows) {
  const auto database = createDatabase(path);
  createTable(*database, notesTable("Notes"));
  insert(*database, "Notes", 0, rows);
}

}  // namespace

CrashScenario changesOfRows() {
  return {.name = "ChangesOfRows",
          .calls = 94,
          .sum = 0xd8fe64f3f696e501,
          .prepare = [](const std::string& path) { makeNotes(path, 5); },
          .commits = {[](Database& d) { insert(d, "Notes", 10, 11, 20); },
                      [](Database& d) { insert(d, "Notes", 11, 12, 12000, 9000); },
                      [](Database& d) { insert(d, "Notes", 100, 200); },
                      [](Database& d) { update(d, "Notes", 2, note(2, 3000, 50)); },
                      [](Database& d) { update(d, "Notes", 11, note(11, 0, 20000)); },
                      [](Database& d) { erase(d, "Notes", [](int id) { return id % 2 == 1; }); }}};
}

CrashScenario newTablesAndIndexes() {
  const auto makeIndex = [](const char* name, const char* column, bool unique) {
    return [=](Database& d) {
      createIndex(d, "Notes", {.name = name, .columns = {{column, false}}, .unique = unique});
    };
  };
  return {.name = "NewTablesAndIndexes",
          .calls = 73,
          .sum = 0x20bdca7b43f417f3,
          .prepare = [](const std::string& path) { makeNotes(path, 150); },
          .commits = {[](Database& d) { createTable(d, notesTable("More notes")); },
                      makeIndex("number", "id", true), makeIndex("text", "title", false),
                      [](Database& d) { insert(d, "More notes", 0, 40, 100); },
                      [](Database& d) {
                        createQuery(d, "qryNotes",
                                    {{.attribute = 5, .name1 = "Notes"},
                                     {.attribute = 6, .expression = "title"}});
                      }}};
}

CrashScenario growthOfMaps() {
  return {.name = "GrowthOfMaps",
          .calls = 282,
          .sum = 0xd9b8bd39122943ea,
          .prepare =
              [](const std::string& path) {
                makeNotes(path, 5);
                insert(*Database::open(path, ""), "Notes", 10, 30, 0, 98000);
              },
          .commits = {[](Database& d) { insert(d, "Notes", 30, 31, 0, 20000); },
                      [](Database& d) { insert(d, "Notes", 31, 32, 0, 60000); },
                      [](Database& d) { insert(d, "Notes", 40, 140, 2000); },
                      [](Database& d) { erase(d, "Notes", [](int id) { return id < 12; }); },
                      [](Database& d) { insert(d, "Notes", 140, 141, 9000, 150000); }}};
}

CrashScenario joinsOfIndexPages() {
  const auto eraseWhere = [](auto isDoomed) {
    return [=](Database& d) { erase(d, "Notes", isDoomed); };
  };
  return {.name = "JoinsOfIndexPages",
          .calls = 110,
          .sum = 0xb3a19e04f67b7be0,
          .prepare = [](const std::string& path) { makeNotes(path, 600); },
          .commits = {eraseWhere([](int id) { return id % 8 != 0; }),
                      eraseWhere([](int id) { return id < 200; }),
                      eraseWhere([](int id) { return id % 16 == 0; }),
                      [](Database& d) { insert(d, "Notes", 1000, 1100); },
                      eraseWhere([](int) { return true; })}};
}

}  // namespace orv::test
