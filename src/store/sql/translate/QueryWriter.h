// Access SQL translated to SQLite's.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/sql/syntax/SqlText.h"
#include "store/sql/syntax/Syntax.h"
#include "store/sql/translate/Catalog.h"
#include "store/sql/translate/Scope.h"

namespace orv::store::sql {

class ExpressionWriter;

/// A statement for SQLite and the columns that it gives.
struct Translation {
  std::string sql;
  std::vector<TypedColumn> columns;
  bool holdsForOthers = true;  ///< for other values of its parameters
};

/// A statement for SQLite that gives the places of rows of one table.
struct RowTranslation {
  std::string sql;
  std::string table;
  bool holdsForOthers = true;  ///< for other values of its parameters
};

/// Translates a statement. Saved queries that it names are put in its place as sub-selects.
class QueryWriter {
 public:
  QueryWriter(Catalog& catalog, SqlText text) : catalog_(catalog), text_(std::move(text)) {}

  /// Translates `query`, which `text` is parsed to. Raises kSyntaxError, kNotSupported,
  /// kObjectNotFound, kItemNotFound, with the place.
  static Translation translate(Catalog& catalog, const SqlText& text, const Query& query);
  /// The rows that `SELECT * FROM table`, with or without WHERE and ORDER BY, picks out; none for a
  /// statement of another shape.
  static std::optional<RowTranslation> translateRows(Catalog& catalog, const SqlText& text,
                                                     const Query& query);

  /// Translates a saved query.
  static Translation translateQuery(Catalog& catalog, const std::string& name);

  /// The translation of a statement or sub-select; its names resolve in `outer` too.
  Translation write(const Query& query, const Scope* outer);
  /// Tells that what is being written depends on the content of a text.
  void holdForTextOnly() { holdsForOthers_ = false; }

 private:
  struct Output {
    std::string sql;
    TypedColumn column;
    const Scope::Member* member = nullptr;  ///< of a plain column
  };
  struct OrderKey {
    std::string sql;
    bool descending = false;
    std::size_t output = 0;  ///< the output that it repeats, counted from 1; 0 when it is none
  };

  Translation writeSelect(const Select& select, const std::vector<Ordering>& orderBy,
                          const Scope* outer);
  Translation writeUnion(const Query& query, const Scope* outer);
  std::string unionOrder(const std::vector<Ordering>& orderBy,
                         const std::vector<TypedColumn>& columns) const;

  std::string writeSources(const Select& select, Scope& scope);
  std::string writeSource(const Source& source, Scope& scope);
  std::string writeTable(const Source& source, Scope& scope);
  std::string writeJoin(const Source& source, Scope& scope);

  std::vector<Output> writeItems(const Select& select, const Scope& scope,
                                 ExpressionWriter& expressions) const;
  void addAll(const SelectItem& item, const Scope& scope, std::vector<Output>& outputs) const;
  std::string writeGroups(const Select& select, const std::vector<Output>& outputs,
                          const Scope& scope, ExpressionWriter& expressions) const;
  std::string groupingOfRows(const Scope& scope, const std::vector<Output>& outputs) const;
  void checkGrouped(const Select& select, const Expression& e,
                    const std::vector<std::string>& groups, ExpressionWriter& expressions,
                    int depth) const;
  std::vector<OrderKey> writeOrder(const std::vector<Ordering>& orderBy,
                                   const std::vector<Output>& outputs,
                                   ExpressionWriter& expressions) const;
  static std::string orderClause(const std::vector<OrderKey>& keys);
  std::string writeTop(const Select& select, const std::string& head, const std::string& tail,
                       const std::vector<OrderKey>& keys, std::size_t columns,
                       std::size_t at) const;

  Translation expandQuery(const std::string& name, const std::string& queryText,
                          std::size_t at) const;
  std::string nextAlias();

  Catalog& catalog_;
  SqlText text_;
  std::vector<std::string> openQueries_;  ///< saved queries that are being expanded
  int aliases_ = 0;
  bool holdsForOthers_ = true;
  std::shared_ptr<int> expansions_ = std::make_shared<int>(0);  ///< of this statement, in all
};

}  // namespace orv::store::sql
