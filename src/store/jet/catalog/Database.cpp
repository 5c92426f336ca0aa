#include "store/jet/catalog/Database.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/catalog/Password.h"
#include "store/jet/definition/Properties.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

/// Named columns of a system table's rows.
class SystemTable {
 public:
  explicit SystemTable(std::shared_ptr<Table> table) : table_(std::move(table)) {}

  std::size_t need(std::string_view name) const {
    const auto column = table_->definition().findColumn(name);
    if (!column) {
      raiseDamaged(table_->definition().page, "system table '" + table_->name() +
                                                  "' lacks its column '" + std::string(name) + "'");
    }
    return *column;
  }
  const Column& column(std::string_view name) const {
    return table_->definition().columns[need(name)];
  }
  TableScan scan() const { return table_->scan(); }
  std::optional<RowView> row(RowId id) const { return table_->row(id); }

 private:
  std::shared_ptr<Table> table_;
};

std::int32_t longOr0(const Value& value) {
  return value.isNull() ? 0 : value.toLong();
}
std::string textOrEmpty(const Value& value) {
  return value.isNull() ? "" : value.toText();
}

std::map<std::string, std::weak_ptr<Database>>& openDatabases() {
  static std::map<std::string, std::weak_ptr<Database>> databases;
  return databases;
}

}  // namespace

std::shared_ptr<Database> Database::open(const std::string& path, const std::string& password) {
  std::shared_ptr<Pager> pager = Pager::open(path);
  std::weak_ptr<Database>& slot = openDatabases()[pager->path()];
  std::shared_ptr<Database> database = slot.lock();
  if (database == nullptr || database->pager_ != pager) {
    database.reset(new Database(std::move(pager)));
  }
  database->checkPassword(password);
  slot = database;
  return database;
}

std::shared_ptr<Database> Database::over(std::shared_ptr<Pager> pager) {
  return std::shared_ptr<Database>(new Database(std::move(pager)));
}

std::shared_ptr<Database> Database::overMemory(Bytes& content, const std::string& path) {
  return over(Pager::overMemory(content, path));
}

Database::Database(std::shared_ptr<Pager> pager) : pager_(std::move(pager)) {}

std::string Database::storedPassword() const {
  return passwordIn(format(), pager_->header());
}

void Database::checkPassword(const std::string& password) const {
  const std::string stored = storedPassword();
  if (stored.empty() || stored == password) {
    return;
  }
  throw Error(kNotAuthenticated,
              password.empty()
                  ? "'" + pager_->path() +
                        "' is protected by a database password, and none was "
                        "given."
                  : "The database password given for '" + pager_->path() + "' is not valid.");
}

std::string Database::formatName() const {
  constexpr const char* kAceNames[] = {"ACE (Access 2007)", "ACE (Access 2010)",
                                       "ACE (Access 2013)", "ACE (Access 2016)",
                                       "ACE (Access 2019)"};
  const int ace = pager_->engineVersion() - 2;
  if (ace < 0) {
    return std::string(format().name);
  }
  return kAceNames[std::min<std::size_t>(static_cast<std::size_t>(ace), std::size(kAceNames) - 1)];
}

std::uint64_t Database::catalogVersion() {
  refreshCatalog();
  return catalogVersion_;
}

const std::vector<CatalogEntry>& Database::entries() {
  refreshCatalog();
  return entries_;
}

void Database::forgetCatalog() {
  entriesKnown_ = false;
}

void Database::refreshCatalog() {
  Pager::ReadLock lock(*pager_);
  std::map<PageNumber, std::shared_ptr<Table>> former;
  if (epoch_ != pager_->epoch()) {
    former.swap(tables_);
  } else if (entriesKnown_) {
    return;
  }
  entries_.clear();
  byName_.clear();
  ++catalogVersion_;
  const SystemTable objects(loadTable("MSysObjects", kCatalogPage, nullptr));
  const Column& id = objects.column("Id");
  const Column& parent = objects.column("ParentId");
  const Column& name = objects.column("Name");
  const Column& type = objects.column("Type");
  const Column& flags = objects.column("Flags");
  for (TableScan scan = objects.scan(); scan.next();) {
    const RowView& row = scan.row();
    entries_.push_back({.id = longOr0(row.value(id)),
                        .parentId = longOr0(row.value(parent)),
                        .name = textOrEmpty(row.value(name)),
                        .kind = static_cast<CatalogEntry::Kind>(longOr0(row.value(type))),
                        .flags = static_cast<std::uint32_t>(longOr0(row.value(flags))),
                        .row = scan.rowId()});
  }
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    using Kind = CatalogEntry::Kind;
    const Kind kind = entries_[i].kind;
    if (kind == Kind::table || kind == Kind::query || kind == Kind::linkedTable ||
        kind == Kind::linkedOdbcTable) {
      byName_.emplace(foldName(entries_[i].name), i);
    }
  }
  epoch_ = pager_->epoch();
  entriesKnown_ = true;
  keepTablesInUse(former);
}

void Database::keepTablesInUse(const std::map<PageNumber, std::shared_ptr<Table>>& tables) {
  for (const auto& [page, table] : tables) {
    const CatalogEntry* entry = find(table->name(), CatalogEntry::Kind::table);
    if (table.use_count() == 1 || entry == nullptr || static_cast<PageNumber>(entry->id) != page) {
      continue;
    }
    const auto definition = loadDefinition(entry->name, page, entry);
    if (*definition != table->definition()) {
      table->changeDefinition(definition);
    }
    tables_[page] = table;
  }
}

const CatalogEntry* Database::find(std::string_view name) {
  refreshCatalog();
  const auto found = byName_.find(foldName(name));
  return found == byName_.end() ? nullptr : &entries_[found->second];
}

const CatalogEntry* Database::find(std::string_view name, CatalogEntry::Kind kind) {
  const CatalogEntry* entry = find(name);
  return entry != nullptr && entry->kind == kind ? entry : nullptr;
}

std::shared_ptr<Table> Database::table(std::string_view name) {
  Pager::ReadLock lock(*pager_);
  const CatalogEntry* entry = find(name);
  using Kind = CatalogEntry::Kind;
  if (entry != nullptr && entry->kind == Kind::table) {
    return loadTable(entry->name, static_cast<PageNumber>(entry->id), entry);
  }
  if (entry != nullptr && entry->kind != Kind::query) {
    refuseLinkedTable(entry->name);
  }
  throw Error(kObjectNotFound,
              "There is no table '" + std::string(name) + "' in '" + pager_->path() + "'.");
}

void Database::refuseLinkedTable(const std::string& name) {
  for (const LinkedTableInfo& linked : linkedTables()) {
    if (linked.name == name && !linked.database.empty()) {
      throw Error(kNotSupported, "'" + name + "' in '" + pager_->path() +
                                     "' is a linked table: its rows are in table '" +
                                     linked.foreignName + "' of '" + linked.database +
                                     "'. Open that database instead.");
    }
  }
  throw Error(kNotSupported, "'" + name + "' in '" + pager_->path() +
                                 "' is a linked table: its rows are in a database that is reached "
                                 "by ODBC, which cannot be read.");
}

std::shared_ptr<const TableDefinition> Database::loadDefinition(const std::string& name,
                                                                PageNumber page,
                                                                const CatalogEntry* entry) {
  std::shared_ptr<TableDefinition> definition = readTableDefinition(*pager_, page, name);
  if (entry != nullptr && !entry->isSystem()) {
    const auto catalog = loadTable("MSysObjects", kCatalogPage, nullptr);
    const auto column = catalog->definition().findColumn("LvProp");
    const auto row = catalog->row(entry->row);
    if (column && row) {
      const Value block = row->value(catalog->definition().columns[*column]);
      if (const Bytes* bytes = block.getIf<Bytes>()) {
        applyProperties(*pager_, readProperties(*pager_, *bytes), *definition);
      }
    }
  }
  return definition;
}

std::shared_ptr<Table> Database::loadTable(const std::string& name, PageNumber page,
                                           const CatalogEntry* entry) {
  if (const auto found = tables_.find(page); found != tables_.end()) {
    return found->second;
  }
  auto table = std::make_shared<Table>(pager_, loadDefinition(name, page, entry));
  tables_[page] = table;
  return table;
}

std::vector<QueryPart> Database::queryParts(const CatalogEntry& query) {
  Pager::ReadLock lock(*pager_);
  const SystemTable queries(table("MSysQueries"));
  const Column& objectId = queries.column("ObjectId");
  const Column& order = queries.column("Order");
  struct Ordered {
    QueryPart part;
    Bytes order;
  };
  std::vector<Ordered> found;
  for (TableScan scan = queries.scan(); scan.next();) {
    const RowView& row = scan.row();
    if (longOr0(row.value(objectId)) != query.id) {
      continue;
    }
    const Value position = row.value(order);
    found.push_back(
        {{.attribute = static_cast<std::uint8_t>(longOr0(row.value(queries.column("Attribute")))),
          .flag = static_cast<std::int16_t>(longOr0(row.value(queries.column("Flag")))),
          .expression = textOrEmpty(row.value(queries.column("Expression"))),
          .name1 = textOrEmpty(row.value(queries.column("Name1"))),
          .name2 = textOrEmpty(row.value(queries.column("Name2")))},
         position.getIf<Bytes>() != nullptr ? *position.getIf<Bytes>() : Bytes()});
  }
  std::stable_sort(found.begin(), found.end(), [](const Ordered& a, const Ordered& b) {
    return std::tie(a.part.attribute, a.order) < std::tie(b.part.attribute, b.order);
  });
  std::vector<QueryPart> parts;
  for (Ordered& ordered : found) {
    parts.push_back(std::move(ordered.part));
  }
  return parts;
}

std::vector<std::string> Database::tablesWithoutIndex() const {
  std::vector<std::string> names;
  for (const auto& [page, table] : tables_) {
    if (!table->distrusted().empty()) names.push_back(table->name());
  }
  return names;
}

std::vector<LinkedTableInfo> Database::linkedTables() {
  Pager::ReadLock lock(*pager_);
  std::vector<LinkedTableInfo> linked;
  for (const CatalogEntry& entry : entries()) {
    if (entry.kind != CatalogEntry::Kind::linkedTable &&
        entry.kind != CatalogEntry::Kind::linkedOdbcTable) {
      continue;
    }
    const SystemTable objects(loadTable("MSysObjects", kCatalogPage, nullptr));
    LinkedTableInfo& info = linked.emplace_back();
    info.name = entry.name;
    if (const auto row = objects.row(entry.row)) {
      info.database = textOrEmpty(row->value(objects.column("Database")));
      info.foreignName = textOrEmpty(row->value(objects.column("ForeignName")));
    }
  }
  return linked;
}

std::vector<RelationInfo> Database::relations() {
  Pager::ReadLock lock(*pager_);
  constexpr std::int32_t kNotEnforced = 0x2;
  std::vector<RelationInfo> relations;
  if (find("MSysRelationships") == nullptr) {
    return relations;
  }
  const SystemTable table(this->table("MSysRelationships"));
  std::map<std::string, RelationInfo> byName;
  for (TableScan scan = table.scan(); scan.next();) {
    const RowView& row = scan.row();
    const std::string name = textOrEmpty(row.value(table.column("szRelationship")));
    RelationInfo& relation = byName[name];
    relation.name = name;
    relation.table = textOrEmpty(row.value(table.column("szObject")));
    relation.referencedTable = textOrEmpty(row.value(table.column("szReferencedObject")));
    relation.columns.push_back(textOrEmpty(row.value(table.column("szColumn"))));
    relation.referencedColumns.push_back(
        textOrEmpty(row.value(table.column("szReferencedColumn"))));
    relation.enforced = (longOr0(row.value(table.column("grbit"))) & kNotEnforced) == 0;
  }
  for (auto& [name, relation] : byName) {
    relations.push_back(std::move(relation));
  }
  return relations;
}

}  // namespace orv::store::jet
