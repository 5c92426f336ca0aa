// The names that a SELECT can use: the columns of its sources, then those of the SELECT around it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/Schema.h"
#include "store/jet/page/Text.h"
#include "store/sql/syntax/SqlText.h"
#include "store/sql/syntax/Syntax.h"

namespace orv::store::sql {

/// A column of an output or of a source. The type is unknown for some expressions.
struct TypedColumn {
  ColumnInfo info;
  bool typed;
};

class Scope {
 public:
  struct Member {
    std::string name;     ///< by which the statement calls it: its alias, or the table's name
    std::string sqlName;  ///< the alias that SQLite sees
    bool baseTable;
    std::vector<TypedColumn> columns;
  };
  struct Found {
    const Member* member;
    std::size_t column;
    std::string sql() const;
    const TypedColumn& typed() const { return member->columns[column]; }
  };

  Scope(const SqlText& text, const Scope* outer) : text_(text), outer_(outer) {}

  /// Raises kSyntaxError when a member has the name already.
  void add(Member member, std::size_t at);
  const std::vector<Member>& members() const { return members_; }
  /// Raises kObjectNotFound.
  const Member& member(const std::string& name, std::size_t at) const;

  /// The column that `path` (column, or table and column) names, here or in an outer scope; none
  /// when there is none. Raises kSyntaxError for a name that more than one member has.
  std::optional<Found> find(const std::vector<std::string>& path, std::size_t at) const;
  /// Raises kItemNotFound, naming the column and where it was looked for.
  [[noreturn]] void failUnknown(const std::vector<std::string>& path, std::size_t at) const;

 private:
  std::optional<Found> findHere(const std::vector<std::string>& path, std::size_t at) const;

  const SqlText& text_;
  const Scope* outer_;
  std::vector<Member> members_;
};

using jet::sameName;

}  // namespace orv::store::sql
