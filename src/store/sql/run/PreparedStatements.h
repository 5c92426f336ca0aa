// Statements of SQLite that have been made ready, and those kept for the next time.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "store/jet/table/Table.h"
#include "store/sql/syntax/Lexer.h"
#include "store/sql/translate/Scope.h"

namespace orv::store::sql {

struct StatementCloser {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

using StatementPointer = std::unique_ptr<sqlite3_stmt, StatementCloser>;

/// A statement of SQLite, planned, and what its rows stand for.
struct PreparedStatement {
  /// A table that it reads, with what its plan rests on.
  struct Source {
    explicit Source(std::shared_ptr<jet::Table> read);
    /// Whether a plan made now would be the same.
    bool isCurrent() const;

    std::shared_ptr<jet::Table> table;
    std::shared_ptr<const jet::TableDefinition> definition;
    int magnitude;           ///< of its number of rows: binary digits
    std::size_t distrusted;  ///< indexes
  };

  /// The place of the row that it gives now, of the table `rowsOf`.
  jet::RowId rowPlace() const {
    return jet::RowId::fromPointer(
        static_cast<std::uint32_t>(sqlite3_column_int64(statement.get(), 0)));
  }

  /// Gives it a value, the `parameter`-th, counted from 1.
  void bind(int parameter, const Token& value) const;

  std::string key{};  ///< of its shape; empty where it is not kept
  StatementPointer statement{};
  std::vector<TypedColumn> values{};     ///< that it gives
  std::shared_ptr<jet::Table> rowsOf{};  ///< the table of which it gives the places of rows instead
  bool holdsForOthers = false;           ///< for other values of its parameters
  std::vector<Source> sources{};
  /// A number that changes with the names that it was made by: the catalogue's, or that of the
  /// whole file where a saved query is one of them.
  std::uint64_t version = 0;
  bool namesQuery = false;
};

/// Statements that nobody runs, by their shape: translating and planning one takes longer than
/// running it does where it picks out the rows of one record.
class PreparedStatements {
 public:
  /// One of this shape that holds for the catalogue, the saved queries and the tables as they are
  /// now; none when there is none.
  std::optional<PreparedStatement> take(const std::string& key, std::uint64_t catalogVersion,
                                        std::uint64_t fileVersion);
  void keep(PreparedStatement statement);

 private:
  std::unordered_map<std::string, PreparedStatement> statements_;
  std::uint64_t catalogVersion_ = 0;
};

}  // namespace orv::store::sql
