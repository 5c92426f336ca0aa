// An open database.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/Recordset.h"
#include "store/Schema.h"

namespace orv::store {

namespace jet {
class Database;
}
namespace sql {
class SqlEngine;
}

/// Whether `source` of a record set is a table or saved query by name, or SQL text.
enum class SourceKind { automatic, table, sql };

/// A connection to one Access database file. Connections of one process to the same file share
/// its page cache, so that each sees what the others commit. A process uses the store from one
/// thread.
class Connection {
 public:
  /// Opens the database that an OLE DB connection string names by "Data Source=" and
  /// "Jet OLEDB:Database Password=" (other clauses are passed over; a ";" always ends a clause).
  /// Commits that a crash has cut short are completed first.
  /// Raises kStoreFailure (missing, locked or unreadable file; no database), kNotAuthenticated
  /// (wrong or missing password), kCorruptFile.
  static std::shared_ptr<Connection> open(std::string_view connectionString);

  /// Opens the database file at `path` (UTF-8) directly.
  static std::shared_ptr<Connection> openFile(const std::string& path,
                                              const std::string& password = "");

  /// Makes a new Jet 4 database at `path`, empty but for what `fill` puts into it: the file
  /// appears whole or not at all. Raises kStoreFailure where a file stands there.
  static std::shared_ptr<Connection> create(const std::string& path,
                                            const std::function<void(Connection&)>& fill = {});

  ~Connection();

  /// Closes the connection. The file stays open for record sets that are, until they close.
  /// Raises kObjectClosed when it is closed already.
  void close();
  bool isOpen() const { return database_ != nullptr; }

  /// Opens a record set over a table, a saved SELECT query or a SELECT statement.
  /// With `automatic`, text that begins with SELECT (or PARAMETERS, TRANSFORM, ...) is SQL.
  /// Raises kObjectNotFound, kSyntaxError, kNotSupported.
  std::unique_ptr<Recordset> openRecordset(const std::string& source,
                                           CursorType cursor = CursorType::forwardOnly,
                                           LockType lock = LockType::readOnly,
                                           SourceKind kind = SourceKind::automatic);

  const std::string& path() const { return path_; }
  /// "Jet 3", "Jet 4", or "ACE" with its version.
  std::string formatName() const;
  bool readOnly() const;
  /// Why the file cannot be changed; empty where it can.
  std::string whyReadOnly() const;
  /// Whether another file stands now where the connection's file was when it was opened. Nothing
  /// can be read or written by this connection then.
  bool isReplaced() const;

  /// Names of the user's tables, in the order of their names.
  std::vector<std::string> tableNames() const;
  /// Names of the saved queries, in the order of their names.
  std::vector<std::string> queryNames() const;
  /// The Access SQL text of a saved query.
  std::string querySql(const std::string& name) const;
  TableInfo table(const std::string& name) const;
  std::vector<RelationInfo> relations() const;
  /// The tables that tableNames() leaves out, since their rows are in other databases.
  std::vector<LinkedTableInfo> linkedTables() const;
  /// The tables of which an index is damaged, as far as reading has met with it. Rows are found in
  /// the tables themselves then.
  std::vector<std::string> tablesWithoutIndex() const;

  /// While the result lives, no other process changes the file: all that is read meanwhile is of
  /// one state. Not to be held over a change, for which other readers are waited for.
  [[nodiscard]] std::shared_ptr<void> holdState() const;

  /// Runs `changes` as one commit: all that they do to the file reaches it or, when an error leaves
  /// them, nothing. Other programs cannot write meanwhile. A row or batch that is refused within is
  /// undone by itself: when its error is caught within, the other changes are committed.
  void inOneCommit(const std::function<void()>& changes);

  /// Deletes, in one commit, the rows of a table that meet a condition of SQL.
  void deleteRows(const std::string& table, const std::string& condition);

  void createTable(const TableInfo& design);
  void createIndex(const std::string& table, const IndexInfo& design);
  void createQuery(const QueryDesign& design);

  jet::Database& database() const;

 private:
  Connection(std::string path, std::shared_ptr<jet::Database> database);

  sql::SqlEngine& engine();

  std::string path_;
  std::shared_ptr<jet::Database> database_;
  std::shared_ptr<sql::SqlEngine> engine_;  ///< made when the first statement runs
};

}  // namespace orv::store
