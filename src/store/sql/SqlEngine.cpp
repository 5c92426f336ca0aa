#include "store/sql/SqlEngine.h"

#include <fmt/format.h>

#include <utility>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/catalog/SavedQuery.h"
#include "store/sql/functions/Functions.h"
#include "store/sql/run/Collations.h"
#include "store/sql/syntax/Parser.h"
#include "store/sql/syntax/StatementShape.h"

namespace orv::store::sql {
namespace {

/// The sort order in which the database compares: that of its catalogue's names. "General" where
/// the codes of that are not known; indexes of text then do not serve.
TextOrder orderOf(jet::Database& database) {
  const jet::Pager::ReadLock lock(database.pager());
  const auto catalog = database.table("MSysObjects");
  const auto name = catalog->definition().findColumn("Name");
  const jet::SortOrder order =
      name ? catalog->definition().columns[*name].sortOrder : jet::SortOrder{};
  const bool general = order.language == jet::SortOrder{}.language;
  return general ? TextOrder(order) : TextOrder::standard();
}

sqlite3* openMemory() {
  sqlite3* db = nullptr;
  // An engine is used from one thread: SQLite need not lock.
  constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  if (sqlite3_open_v2(":memory:", &db, kFlags, nullptr) != SQLITE_OK) {
    sqlite3_close(db);
    throw Error(kStoreFailure, "SQLite cannot be started.");
  }
  return db;
}

}  // namespace

std::shared_ptr<SqlEngine> SqlEngine::create(std::shared_ptr<jet::Database> database) {
  return std::shared_ptr<SqlEngine>(new SqlEngine(std::move(database)));
}

SqlEngine::SqlEngine(std::shared_ptr<jet::Database> database)
    : database_(std::move(database)),
      textOrder_(orderOf(*database_)),
      db_(openMemory()),
      tables_(db_.get(), textOrder_, failure_) {
  registerCollations(db_.get(), textOrder_);
  registerFunctions(db_.get(), failure_);
}

SqlEngine::~SqlEngine() = default;

std::unique_ptr<SqlCursor> SqlEngine::open(const std::string& sql) {
  const jet::Pager::ReadLock lock(pager());
  return start(prepare(SqlText{sql}));
}

std::unique_ptr<SqlCursor> SqlEngine::openQuery(const std::string& name) {
  const jet::Pager::ReadLock lock(pager());
  JetCatalog catalog(*database_, tables_);
  const Translation translation = QueryWriter::translateQuery(catalog, name);
  PreparedStatement statement;
  statement.statement = plan(translation.sql);
  statement.values = translation.columns;
  return start(std::move(statement));
}

SelectedRows SqlEngine::selectRows(const std::string& sql) {
  const jet::Pager::ReadLock lock(pager());
  const SqlText text{sql};
  PreparedStatement statement = prepare(text);
  if (!statement.rowsOf) {
    text.fail(kReadOnlyStore,
              "Only rows of a SELECT * over one table, with or without WHERE and ORDER BY, can be "
              "changed",
              0);
  }
  SelectedRows selected{statement.rowsOf, {}};
  while (step(statement)) selected.rows.push_back(statement.rowPlace());
  keep(std::move(statement));
  return selected;
}

std::string SqlEngine::translate(const std::string& sql) {
  const jet::Pager::ReadLock lock(pager());
  const SqlText text{sql};
  JetCatalog catalog(*database_, tables_);
  return QueryWriter::translate(catalog, text, Parser::parse(text)).sql;
}

std::unique_ptr<SqlCursor> SqlEngine::start(PreparedStatement statement) {
  return std::unique_ptr<SqlCursor>(new SqlCursor(shared_from_this(), std::move(statement)));
}

/// The statement, ready to run.
PreparedStatement SqlEngine::prepare(const SqlText& text) {
  std::vector<Token> tokens = Parser::tokens(text);
  StatementShape shape = takeParameters(tokens);
  auto kept = statements_.take(shape.key, database_->catalogVersion(), pager().version());
  PreparedStatement statement = kept ? std::move(*kept) : make(text, std::move(tokens));
  if (statement.holdsForOthers) statement.key = std::move(shape.key);
  for (std::size_t i = 0; i < shape.parameters.size(); ++i) {
    statement.bind(static_cast<int>(i) + 1, shape.parameters[i]);
  }
  return statement;
}

PreparedStatement SqlEngine::make(const SqlText& text, std::vector<Token> tokens) {
  JetCatalog catalog(*database_, tables_);
  const Query query = Parser::parse(text, std::move(tokens));
  PreparedStatement statement;
  // SQLite picks whole rows out; their values need not go through it.
  if (const auto rows = QueryWriter::translateRows(catalog, text, query)) {
    statement.statement = plan(rows->sql);
    statement.rowsOf = database_->table(rows->table);
    statement.holdsForOthers = rows->holdsForOthers;
  } else {
    const Translation translation = QueryWriter::translate(catalog, text, query);
    statement.statement = plan(translation.sql);
    statement.values = translation.columns;
    statement.holdsForOthers = translation.holdsForOthers;
  }
  statement.sources = std::move(catalog.sources);
  statement.namesQuery = catalog.namesQuery;
  statement.version = statement.namesQuery ? pager().version() : database_->catalogVersion();
  return statement;
}

StatementPointer SqlEngine::plan(const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(db_.get(), sql.c_str(), static_cast<int>(sql.size()), &statement,
                         nullptr) != SQLITE_OK) {
    fail();
  }
  return StatementPointer(statement);
}

bool SqlEngine::step(const PreparedStatement& statement) {
  const int result = sqlite3_step(statement.statement.get());
  if (result != SQLITE_ROW && result != SQLITE_DONE) {
    fail();
  }
  return result == SQLITE_ROW;
}

void SqlEngine::fail() {
  failure_.rethrow();
  throw Error(kSyntaxError,
              fmt::format("The statement cannot be run: {}.", sqlite3_errmsg(db_.get())));
}

std::optional<TableBinding> SqlEngine::JetCatalog::table(const std::string& name) {
  const jet::CatalogEntry* entry = database_.find(name);
  if (entry == nullptr || entry->kind == jet::CatalogEntry::Kind::query) {
    return std::nullopt;
  }
  const std::shared_ptr<jet::Table> table = database_.table(name);
  sources.emplace_back(table);
  TableBinding binding{tables_.nameOf(table), {}};
  for (const jet::Column& column : table->definition().columns) {
    binding.columns.push_back(jet::describe(column));
  }
  return binding;
}

bool SqlEngine::JetCatalog::isQuery(const std::string& name) {
  return database_.find(name, jet::CatalogEntry::Kind::query) != nullptr;
}

std::optional<std::string> SqlEngine::JetCatalog::queryText(const std::string& name) {
  const jet::CatalogEntry* entry = database_.find(name, jet::CatalogEntry::Kind::query);
  if (entry == nullptr) {
    return std::nullopt;
  }
  namesQuery = true;
  const jet::SavedQuery query(entry->name, database_.queryParts(*entry));
  if (query.kind() == jet::QueryKind::passThrough) {
    throw Error(kNotSupported,
                fmt::format("The saved query \"{}\" is a pass-through query, which only the "
                            "server that it is written for can run.",
                            entry->name));
  }
  return query.sql();
}

}  // namespace orv::store::sql
