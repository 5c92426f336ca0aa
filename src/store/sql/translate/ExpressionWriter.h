// Expressions of Access SQL, written as SQLite's.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "store/Schema.h"
#include "store/sql/syntax/SqlText.h"
#include "store/sql/syntax/Syntax.h"
#include "store/sql/translate/Scope.h"

namespace orv::store::sql {

class QueryWriter;

/// An expression in SQLite's SQL. Its type is that of its column or operation; none when it
/// depends on the row.
struct SqlPiece {
  std::string sql;
  std::optional<ColumnType> type{};
  bool truth = false;   ///< 1 or 0, as SQLite's conditions give, where Access has -1 or 0
  bool column = false;  ///< a column as it stands: it brings its collation
};

/// Writes the expressions of one SELECT, resolving names in its scope. An alias of the SELECT
/// that is used as a name stands for its expression. Raises kSyntaxError, kItemNotFound,
/// kNotSupported with the place.
class ExpressionWriter {
 public:
  ExpressionWriter(const SqlText& text, const Scope& scope, QueryWriter& queries,
                   const std::vector<SelectItem>& items)
      : text_(text), scope_(scope), queries_(queries), items_(items) {}

  SqlPiece write(const Expression& expression);
  /// As an operand: true is -1, a fixed-point number is a number.
  SqlPiece value(const Expression& expression) { return asValue(write(expression)); }
  /// As a condition: anything that is neither 0 nor Null is true.
  std::string condition(const Expression& expression) { return write(expression).sql; }
  /// As an output, a group or a sort key: with the collation of its type.
  SqlPiece collated(const Expression& expression);

  /// The column that a name stands for, if it is one of a source.
  std::optional<Scope::Found> column(const Expression& expression) const;

  /// Whether a column is one of this SELECT's own sources, not of one around it.
  bool isOwn(const Scope::Found& found) const;

  static bool isAggregate(const Expression& expression);
  static bool containsAggregate(const Expression& expression);

 private:
  SqlPiece name(const Expression& e);
  SqlPiece unary(const Expression& e);
  SqlPiece binary(const Expression& e);
  SqlPiece logical(const Expression& e);
  SqlPiece comparison(const Expression& e);
  SqlPiece between(const Expression& e);
  SqlPiece in(const Expression& e);
  SqlPiece like(const Expression& e);
  SqlPiece arithmetic(const std::string& op, const SqlPiece& left, const SqlPiece& right);
  SqlPiece plus(const SqlPiece& left, const SqlPiece& right);
  SqlPiece subquery(const Expression& e);
  SqlPiece call(const Expression& e);
  SqlPiece nullToValue(const Expression& e);
  SqlPiece cases(const Expression& e, const std::string& name);
  SqlPiece aggregate(const Expression& e, const std::string& name);

  static SqlPiece asValue(SqlPiece piece);
  static SqlPiece asComparand(SqlPiece piece);
  static SqlPiece asCollated(SqlPiece piece);
  static std::string asNumber(const SqlPiece& piece);
  static std::string asText(const SqlPiece& piece);
  void adaptLiteral(const Expression& e, SqlPiece& piece, const SqlPiece& other) const;
  void needArguments(const Expression& e, std::size_t least, std::size_t most) const;

  const SqlText& text_;
  const Scope& scope_;
  QueryWriter& queries_;
  const std::vector<SelectItem>& items_;
  std::set<const SelectItem*> open_;  ///< aliases that are being written, against circles
  int depth_ = 0;
};

}  // namespace orv::store::sql
