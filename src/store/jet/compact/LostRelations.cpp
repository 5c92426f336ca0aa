#include "store/jet/compact/LostRelations.h"

#include <algorithm>
#include <set>

#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

constexpr std::int32_t kNotEnforced = 2;

using Names = std::multiset<std::string>;

Names columnsOf(const TableDefinition& table, const LogicalIndex& index) {
  Names names;
  for (const IndexColumn& key : table.realIndexes[index.realIndex].columns) {
    names.insert(foldName(table.columns[key.column].name));
  }
  return names;
}

/// Whether the table of a relation has an index over its columns that names the other table.
bool isServed(Database& database, const RelationInfo& relation) {
  const CatalogEntry* other = database.find(relation.referencedTable);
  if (other == nullptr || !database.find(relation.table, CatalogEntry::Kind::table)) return false;
  Names columns;
  for (const std::string& column : relation.columns) columns.insert(foldName(column));
  const auto otherPage = static_cast<PageNumber>(other->id);
  const TableDefinition& definition = database.table(relation.table)->definition();
  return std::ranges::any_of(definition.logicalIndexes, [&](const LogicalIndex& index) {
    return index.relationTable == otherPage && columnsOf(definition, index) == columns;
  });
}

}  // namespace

std::vector<std::string> dropLostRelations(Database& database) {
  std::set<std::string> lost;
  for (const RelationInfo& relation : database.relations()) {
    if (relation.enforced && !isServed(database, relation)) lost.insert(relation.name);
  }
  if (lost.empty()) return {};
  const auto table = database.table("MSysRelationships");
  const TableDefinition& definition = table->definition();
  const std::size_t name = definition.findColumn("szRelationship").value();
  const std::size_t flags = definition.findColumn("grbit").value();
  std::vector<std::pair<RowId, std::vector<Value>>> rows;
  for (TableScan scan = table->scan(); scan.next();) {
    std::vector<Value> values;
    for (const Column& each : definition.columns) values.push_back(scan.row().value(each));
    if (!lost.contains(values[name].toText())) continue;
    values[flags] = values[flags].toLong() | kNotEnforced;
    rows.emplace_back(scan.rowId(), std::move(values));
  }
  for (const auto& [id, values] : rows) table->update(id, values);
  return {lost.begin(), lost.end()};
}

}  // namespace orv::store::jet
