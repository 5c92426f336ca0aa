// Which index serves a query's constraints on a table.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "store/jet/table/Table.h"

namespace orv::store::sql {

/// A constraint as SQLite offers it.
struct Constraint {
  enum class Kind { equal, isNull, lower, upper };
  int position;  ///< in SQLite's list
  std::size_t column;
  Kind kind;
};

struct SortTerm {
  std::size_t column;
  bool descending;
};

/// A way of reading the rows of a table.
struct IndexPlan {
  enum class Kind { scan, index, lookup };
  Kind kind = Kind::scan;
  /// The real index; for a lookup (in memory, by one column) the column.
  std::size_t number = 0;
  bool backward = false;
  /// The constraints that are used, in order: on the index's columns from the first on, equal or
  /// Null; then bounds of the next column.
  std::vector<Constraint> used{};
  bool ordered = false;  ///< rows come as the sort terms ask
  bool unique = false;   ///< the index finds at most one row
  double cost;
  double rows;
};

/// The cheapest plan. An index on text serves only if it has the sort order by which SQLite
/// compares.
IndexPlan choosePlan(const jet::Table& table, const jet::SortOrder& textOrder,
                     const std::vector<Constraint>& constraints,
                     const std::vector<SortTerm>& order);

}  // namespace orv::store::sql
