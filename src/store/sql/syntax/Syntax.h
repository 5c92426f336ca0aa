// A SELECT statement of Access SQL as a tree.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/Schema.h"

namespace orv::store::sql {

struct Query;

struct Expression {
  enum class Kind {
    null,
    number,    ///< `text`: digits as written
    text,      ///< `text`: the value
    date,      ///< `text`: what stood between the number signs
    guid,      ///< `text`: "{...}"
    boolean,   ///< `text`: "True" or "False"
    name,      ///< `path`: the names from the outermost on
    allRows,   ///< the star of Count(*)
    unary,     ///< `text`: "-", "+" or "NOT"
    binary,    ///< `text`: the operator in upper case
    between,   ///< value, lower, upper
    inList,    ///< value, then the list
    inQuery,   ///< value, and `query`
    exists,    ///< `query`
    subquery,  ///< `query`
    isNull,
    like,  ///< value, pattern; `text`: "LIKE" or "ALIKE"
    call,  ///< `text`: the function's name; its arguments
  };
  Kind kind = Kind::null;
  std::size_t at = 0;  ///< byte of the statement
  std::string text{};
  int parameter = 0;  ///< a number or text that SQLite is given when the statement runs
  std::vector<std::string> path{};
  bool negated = false;  ///< NOT IN, NOT LIKE, NOT BETWEEN, IS NOT NULL
  std::vector<Expression> operands{};
  std::shared_ptr<const Query> query{};
};

struct SelectItem {
  Expression expression;
  std::string alias{};
  bool all = false;     ///< `*` or `table.*`
  std::string allOf{};  ///< the table, or empty for all of them
  std::size_t at = 0;
};

/// A table, a sub-select or a join in FROM.
struct Source {
  enum class Kind { table, query, join };
  Kind kind = Kind::table;
  std::size_t at = 0;
  std::string name{};
  std::string alias{};
  std::shared_ptr<const Query> query{};
  JoinKind join = JoinKind::inner;
  std::vector<Source> sides{};  ///< of a join: left and right
  std::optional<Expression> on{};
};

struct Top {
  double count = 0;
  bool percent = false;
};

struct Select {
  bool distinct = false;
  bool distinctRow = false;
  std::optional<Top> top{};
  std::vector<SelectItem> items;
  std::vector<Source> from;
  std::optional<Expression> where{};
  std::vector<Expression> groupBy{};
  std::optional<Expression> having{};
};

struct Ordering {
  Expression expression;
  bool descending = false;
};

/// One SELECT, or several joined by UNION; `unionAll[i]` tells how selects[i + 1] joins.
struct Query {
  std::vector<Select> selects;
  std::vector<bool> unionAll{};
  std::vector<Ordering> orderBy{};
};

}  // namespace orv::store::sql
