#include "store/jet/catalog/Creation.h"

#include <algorithm>
#include <limits>
#include <map>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/catalog/CatalogWriter.h"
#include "store/jet/catalog/EmptyDatabase.h"
#include "store/jet/definition/Properties.h"
#include "store/jet/definition/TableDesign.h"
#include "store/jet/page/PageAllocator.h"
#include "store/jet/page/Text.h"
#include "store/jet/table/IndexBuilder.h"
#include "store/jet/table/TablePlacement.h"

namespace orv::store::jet {
namespace {

// Parts of a query that every query has.
constexpr std::uint8_t kFirstPart = 0;
constexpr std::uint8_t kLastPart = 255;

void refuseTakenName(Database& database, const std::string& name) {
  if (const CatalogEntry* entry = database.find(name)) {
    throw Error(kObjectExists, "'" + database.pager().path() + "' has a " +
                                   (entry->kind == CatalogEntry::Kind::query ? "query" : "table") +
                                   " '" + entry->name + "' already. Choose another name.");
  }
}

Property yesOrNo(const char* name, bool value) {
  return {name, ColumnType::boolean, {static_cast<std::uint8_t>(value ? 1 : 0)}, true};
}

/// What is said of the columns beside their definition. Whether text may be empty is always
/// said: programs differ in what they take it to be when it is not.
Bytes propertiesOf(const TableDefinition& table) {
  PropertyMap properties;
  for (const Column& column : table.columns) {
    std::vector<Property> list;
    if (column.required) {
      list.push_back(yesOrNo("Required", true));
    }
    if (column.type == ColumnType::text || column.type == ColumnType::memo) {
      list.push_back(yesOrNo("AllowZeroLength", column.allowZeroLength));
    }
    if (column.defaultValue) {
      list.push_back({"DefaultValue", ColumnType::memo, utf16Bytes(*column.defaultValue), true});
    }
    if (!list.empty()) {
      properties[column.name] = std::move(list);
    }
  }
  if (properties.empty()) {
    return {};
  }
  properties[""];  // the table's own come first, also when it has none
  return writeProperties(properties);
}

Value textOrNull(const std::string& text) {
  return text.empty() ? Value() : Value(text);
}

/// Parts that say nothing by their flag have none.
Value flagOf(const QueryPart& part) {
  constexpr std::uint8_t kFlagged[] = {0, 1, 2, 3, 6, 7, 9};
  const bool has = part.flag != 0 || std::find(std::begin(kFlagged), std::end(kFlagged),
                                               part.attribute) != std::end(kFlagged);
  return has ? Value(std::int32_t{part.flag}) : Value();
}

std::vector<QueryPart> completed(std::vector<QueryPart> parts) {
  for (const std::uint8_t attribute : {kLastPart, kFirstPart}) {
    if (std::none_of(parts.begin(), parts.end(),
                     [&](const QueryPart& part) { return part.attribute == attribute; })) {
      parts.insert(parts.begin(), QueryPart{.attribute = attribute});
    }
  }
  return parts;
}

Bytes bigEndian(std::uint32_t number) {
  return {static_cast<std::uint8_t>(number >> 24), static_cast<std::uint8_t>(number >> 16),
          static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
}

}  // namespace

std::shared_ptr<Database> createDatabase(const std::string& path, const Filling& fill) {
  Bytes content = emptyDatabase();
  if (fill) {
    fill(Database::overMemory(content, path));
  }
  Pager::createFile(path, content);
  return Database::open(path, "");
}

/// Objects that have no page are numbered from the lowest number on.
std::int32_t nextObjectId(Database& database) {
  std::int32_t next = std::numeric_limits<std::int32_t>::min();
  for (const CatalogEntry& entry : database.entries()) {
    if (entry.id < 0) {
      next = std::max(next, entry.id + 1);
    }
  }
  return next;
}

void createTable(Database& database, const TableInfo& design) {
  TableDefinition table = defineTable(design);
  Transaction transaction(database.pager());
  refuseTakenName(database, design.name);
  table.page = PageAllocator(database.pager()).allocate();
  placeTable(database.pager(), table);
  CatalogWriter(database).addUserObject({.id = static_cast<std::int32_t>(table.page),
                                         .name = table.name,
                                         .properties = propertiesOf(table)});
  transaction.commit();
  database.forgetCatalog();
}

void createIndex(Database& database, const std::string& table, const IndexInfo& design) {
  Transaction transaction(database.pager());
  const std::shared_ptr<Table> target = database.table(table);
  auto definition = std::make_shared<TableDefinition>(target->definition());
  defineIndex(*definition, design);
  buildLastIndex(*target, *definition);
  transaction.commit();
  target->changeDefinition(std::move(definition));
  database.forgetCatalog();
}

void createQuery(Database& database, const std::string& name, const std::vector<QueryPart>& parts) {
  checkName("a query", name);
  Transaction transaction(database.pager());
  refuseTakenName(database, name);
  const std::int32_t id = nextObjectId(database);
  CatalogWriter(database).addUserObject(
      {.id = id, .name = name, .kind = CatalogEntry::Kind::query});
  const std::shared_ptr<Table> queries = database.table("MSysQueries");
  std::map<std::uint8_t, std::uint32_t> count;
  for (const QueryPart& part : completed(parts)) {
    queries->insert(systemRow(*queries, {{"ObjectId", id},
                                         {"Attribute", std::int32_t{part.attribute}},
                                         {"Order", bigEndian(++count[part.attribute])},
                                         {"Flag", flagOf(part)},
                                         {"Expression", textOrNull(part.expression)},
                                         {"Name1", textOrNull(part.name1)},
                                         {"Name2", textOrNull(part.name2)}}));
  }
  transaction.commit();
  database.forgetCatalog();
}

}  // namespace orv::store::jet
