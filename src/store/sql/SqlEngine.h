// SELECT statements over the tables and saved queries of one database.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "store/jet/catalog/Database.h"
#include "store/sql/SqlCursor.h"
#include "store/sql/functions/Callbacks.h"
#include "store/sql/functions/TextOrder.h"
#include "store/sql/run/PreparedStatements.h"
#include "store/sql/run/TableModule.h"
#include "store/sql/syntax/Lexer.h"
#include "store/sql/translate/Catalog.h"
#include "store/sql/translate/QueryWriter.h"

namespace orv::store::sql {

/// Rows of one table.
struct SelectedRows {
  std::shared_ptr<jet::Table> table;
  std::vector<jet::RowId> rows;
};

/// Translates Access SQL and has SQLite run it. Used from one thread.
class SqlEngine : public std::enable_shared_from_this<SqlEngine> {
 public:
  static std::shared_ptr<SqlEngine> create(std::shared_ptr<jet::Database> database);
  ~SqlEngine();
  SqlEngine(const SqlEngine&) = delete;
  SqlEngine& operator=(const SqlEngine&) = delete;

  /// Begins a SELECT statement. The cursor keeps the engine alive. Raises kSyntaxError,
  /// kNotSupported, kObjectNotFound (a table), kItemNotFound (a column), with the place.
  std::unique_ptr<SqlCursor> open(const std::string& sql);
  /// Begins a saved query. Raises kObjectNotFound when there is none of the name.
  std::unique_ptr<SqlCursor> openQuery(const std::string& name);

  /// The rows of a table that `SELECT * FROM table`, with or without WHERE and ORDER BY, picks
  /// out, for a record set that changes them. Raises kReadOnlyStore for other statements.
  SelectedRows selectRows(const std::string& sql);

  /// Rows that queries have visited in tables so far: what tells an index from a scan.
  std::uint64_t rowsRead() const { return tables_.rowsRead(); }
  /// As that of TableModule.
  const jet::RowView* visitedRow(jet::RowId id) const { return tables_.visitedRow(id); }
  /// What SQLite is given for a statement.
  std::string translate(const std::string& sql);

  jet::Pager& pager() const { return database_->pager(); }

 private:
  friend class SqlCursor;

  /// The database's catalogue as the translator sees it.
  class JetCatalog final : public Catalog {
   public:
    JetCatalog(jet::Database& database, TableModule& tables)
        : database_(database), tables_(tables) {}
    std::optional<TableBinding> table(const std::string& name) override;
    std::optional<std::string> queryText(const std::string& name) override;
    bool isQuery(const std::string& name) override;

    std::vector<PreparedStatement::Source> sources;  ///< tables that the translation has named
    bool namesQuery = false;                         ///< whether it has named a saved query

   private:
    jet::Database& database_;
    TableModule& tables_;
  };

  explicit SqlEngine(std::shared_ptr<jet::Database> database);
  std::unique_ptr<SqlCursor> start(PreparedStatement statement);
  PreparedStatement prepare(const SqlText& text);
  PreparedStatement make(const SqlText& text, std::vector<Token> tokens);
  StatementPointer plan(const std::string& sql);
  void keep(PreparedStatement statement) { statements_.keep(std::move(statement)); }
  bool step(const PreparedStatement& statement);
  [[noreturn]] void fail();

  std::shared_ptr<jet::Database> database_;
  TextOrder textOrder_;
  CallbackFailure failure_;
  struct Closer {
    void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
  };
  std::unique_ptr<sqlite3, Closer> db_;
  TableModule tables_;
  PreparedStatements statements_;
};

}  // namespace orv::store::sql
