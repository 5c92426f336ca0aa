#include "store/Connection.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/SqlRecordset.h"
#include "store/StoreError.h"
#include "store/TableRecordset.h"
#include "store/jet/catalog/Creation.h"
#include "store/jet/catalog/Database.h"
#include "store/jet/catalog/SavedQuery.h"
#include "store/jet/page/Text.h"
#include "store/jet/table/RowChanges.h"
#include "store/sql/SqlEngine.h"

namespace orv::store {
namespace {

using jet::CatalogEntry;

/// The value of a clause of a connection string; empty when there is none.
std::string clause(std::string_view connectionString, std::string_view name) {
  const std::string wanted = jet::foldName(name);
  while (!connectionString.empty()) {
    const std::string_view part = connectionString.substr(0, connectionString.find(';'));
    const auto equals = part.find('=');
    if (equals != std::string_view::npos && jet::foldName(part.substr(0, equals)) == wanted) {
      return std::string(part.substr(equals + 1));
    }
    connectionString.remove_prefix(std::min(part.size() + 1, connectionString.size()));
  }
  return {};
}

/// Whether a record set's source is a statement rather than the name of a table or query.
bool isStatement(std::string_view source) {
  const auto start = source.find_first_not_of(" \t\r\n(");
  const std::string word =
      start == std::string_view::npos
          ? ""
          : jet::foldName(source.substr(start, source.find_first_of(" \t\r\n", start) - start));
  static constexpr std::string_view kVerbs[] = {"select", "parameters", "transform", "insert",
                                                "update", "delete",     "create",    "drop",
                                                "alter",  "exec",       "execute",   "union"};
  return std::find(std::begin(kVerbs), std::end(kVerbs), word) != std::end(kVerbs) &&
         source.find_first_of(" \t\r\n", start) != std::string_view::npos;
}

std::vector<std::string> sorted(std::vector<std::string> names) {
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return jet::foldName(a) < jet::foldName(b);
  });
  return names;
}

}  // namespace

std::shared_ptr<Connection> Connection::open(std::string_view connectionString) {
  return openFile(clause(connectionString, "Data Source"),
                  clause(connectionString, "Jet OLEDB:Database Password"));
}

std::shared_ptr<Connection> Connection::openFile(const std::string& path,
                                                 const std::string& password) {
  auto database = jet::Database::open(path, password);
  database->entries();  // A file whose catalogue cannot be read is not opened.
  return std::shared_ptr<Connection>(new Connection(path, std::move(database)));
}

std::shared_ptr<Connection> Connection::create(const std::string& path,
                                               const std::function<void(Connection&)>& fill) {
  const auto fillNew = [&](const std::shared_ptr<jet::Database>& database) {
    if (fill) {
      Connection connection(path, database);
      fill(connection);
    }
  };
  return std::shared_ptr<Connection>(new Connection(path, jet::createDatabase(path, fillNew)));
}

Connection::Connection(std::string path, std::shared_ptr<jet::Database> database)
    : path_(std::move(path)), database_(std::move(database)) {}

Connection::~Connection() = default;

void Connection::close() {
  database();
  engine_.reset();
  database_.reset();
}

jet::Database& Connection::database() const {
  if (database_ == nullptr) {
    throw Error(kObjectClosed, "The connection to '" + path_ + "' is closed.");
  }
  return *database_;
}

sql::SqlEngine& Connection::engine() {
  if (engine_ == nullptr) {
    engine_ = sql::SqlEngine::create(database_);
  }
  return *engine_;
}

std::unique_ptr<Recordset> Connection::openRecordset(const std::string& source, CursorType cursor,
                                                     LockType lock, SourceKind kind) {
  jet::Database& database = this->database();
  if (kind == SourceKind::sql || (kind == SourceKind::automatic && isStatement(source))) {
    if (lock == LockType::readOnly) {
      // Held until the first rows have been read.
      const jet::Pager::ReadLock state(database.pager());
      return std::make_unique<SqlRecordset>(engine().open(source), cursor);
    }
    sql::SelectedRows rows = engine().selectRows(source);
    return std::make_unique<TableRecordset>(std::move(rows.table), std::move(rows.rows), lock);
  }
  if (database.find(source, CatalogEntry::Kind::query)) {
    return std::make_unique<SqlRecordset>(engine().openQuery(source), cursor);
  }
  return std::make_unique<TableRecordset>(database.table(source), cursor, lock);
}

void Connection::deleteRows(const std::string& table, const std::string& condition) {
  jet::Savepoint transaction(database().pager());
  const sql::SelectedRows selected =
      engine().selectRows("SELECT * FROM [" + table + "] WHERE " + condition);
  jet::RowChanges changes(*selected.table);
  for (const jet::RowId row : selected.rows) changes.erase(row);
  changes.finish();
  transaction.commit();
}

std::string Connection::formatName() const {
  return database().formatName();
}

std::string Connection::whyReadOnly() const {
  return database().pager().whyReadOnly();
}

bool Connection::isReplaced() const {
  return database().pager().isReplaced();
}

bool Connection::readOnly() const {
  return database().pager().readOnly();
}

std::vector<std::string> Connection::tableNames() const {
  std::vector<std::string> names;
  for (const CatalogEntry& entry : database().entries()) {
    if (entry.kind == CatalogEntry::Kind::table && !entry.isSystem()) {
      names.push_back(entry.name);
    }
  }
  return sorted(std::move(names));
}

std::vector<std::string> Connection::queryNames() const {
  std::vector<std::string> names;
  for (const CatalogEntry& entry : database().entries()) {
    if (entry.kind == CatalogEntry::Kind::query && !entry.isHiddenQuery()) {
      names.push_back(entry.name);
    }
  }
  return sorted(std::move(names));
}

std::string Connection::querySql(const std::string& name) const {
  const CatalogEntry* entry = database().find(name, CatalogEntry::Kind::query);
  if (entry == nullptr) {
    throw Error(kObjectNotFound, "There is no saved query '" + name + "' in '" + path_ + "'.");
  }
  return jet::SavedQuery(entry->name, database().queryParts(*entry)).sql();
}

TableInfo Connection::table(const std::string& name) const {
  const std::shared_ptr<jet::Table> table = database().table(name);
  const jet::TableDefinition& definition = table->definition();
  TableInfo info{
      .name = table->name(), .columns = {}, .indexes = {}, .rowCount = table->rowCount()};
  for (const jet::Column& column : definition.columns) {
    info.columns.push_back(jet::describe(column));
  }
  for (const jet::LogicalIndex& logical : definition.logicalIndexes) {
    const jet::RealIndex& real = definition.realIndexes[logical.realIndex];
    IndexInfo& index = info.indexes.emplace_back();
    index.name = logical.name;
    index.primary = logical.kind == jet::LogicalIndex::Kind::primary;
    index.unique = real.unique || index.primary;
    index.ignoreNulls = real.ignoreNulls;
    index.required = real.required;
    index.ofRelation = logical.kind == jet::LogicalIndex::Kind::foreign;
    for (const jet::IndexColumn& key : real.columns) {
      index.columns.push_back({definition.columns[key.column].name, key.ascending});
    }
  }
  return info;
}

std::vector<RelationInfo> Connection::relations() const {
  return database().relations();
}

std::vector<LinkedTableInfo> Connection::linkedTables() const {
  return database().linkedTables();
}

std::vector<std::string> Connection::tablesWithoutIndex() const {
  return database().tablesWithoutIndex();
}

std::shared_ptr<void> Connection::holdState() const {
  return std::make_shared<jet::Pager::ReadLock>(database().pager());
}

void Connection::inOneCommit(const std::function<void()>& changes) {
  jet::Transaction transaction(database().pager());
  changes();
  transaction.commit();
}

void Connection::createTable(const TableInfo& design) {
  jet::createTable(database(), design);
}

void Connection::createIndex(const std::string& table, const IndexInfo& design) {
  jet::createIndex(database(), table, design);
}

void Connection::createQuery(const QueryDesign& design) {
  jet::createQuery(database(), design.name, jet::SavedQuery::partsOf(design));
}

}  // namespace orv::store
