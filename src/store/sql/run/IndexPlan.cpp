#include "store/sql/run/IndexPlan.h"

#include <algorithm>
#include <cmath>

#include "store/sql/run/KeyBound.h"
#include "store/sql/translate/Catalog.h"

namespace orv::store::sql {
namespace {

// Guesses: not every program keeps the numbers of different keys that the file has.
constexpr double kRowsPerEqual = 1.0 / 50;
constexpr double kRowsPerBound = 1.0 / 4;
constexpr double kSearchCost = 5;    ///< going down a tree, in rows of a scan
constexpr double kFetchCost = 2;     ///< a row by its place, in rows of a scan
constexpr double kLookupCost = 3.5;  ///< the same through an index in memory, building included
constexpr double kLookupWorthwhile = 64;

class Planner {
 public:
  Planner(const jet::Table& table, const jet::SortOrder& textOrder,
          const std::vector<Constraint>& constraints, const std::vector<SortTerm>& order)
      : table_(table),
        definition_(table.definition()),
        textOrder_(textOrder),
        constraints_(constraints),
        order_(order),
        tableRows_(std::max(1.0, static_cast<double>(table.rowCount()))) {}

  IndexPlan best() const {
    IndexPlan best;
    best.cost = best.rows = tableRows_;
    double bestTotal = total(best);
    const auto consider = [&](const std::optional<IndexPlan>& plan) {
      if (plan && total(*plan) < bestTotal) {
        best = *plan;
        bestTotal = total(best);
      }
    };
    for (const jet::RealIndex& index : definition_.realIndexes) {
      if (!table_.distrusted().contains(index.number)) consider(planOf(index));
    }
    if (best.kind == IndexPlan::Kind::scan && tableRows_ >= kLookupWorthwhile) {
      consider(lookup());
    }
    return best;
  }

 private:
  /// The cost with the sorting that SQLite would have to do.
  double total(const IndexPlan& plan) const {
    const bool sort = !order_.empty() && !plan.ordered;
    return plan.cost + (sort ? plan.rows * std::log2(plan.rows + 2) * 0.3 : 0);
  }

  bool serves(const jet::IndexColumn& key) const {
    const jet::Column& column = definition_.columns[key.column];
    return isSearchable(column.type) &&
           (!isTextType(column.type) || column.sortOrder == textOrder_);
  }

  /// What is searched for a text may be but the beginning of keys, and find others before it.
  bool hasText(const jet::RealIndex& index) const {
    return std::ranges::any_of(index.columns, [&](const jet::IndexColumn& key) {
      return isTextType(definition_.columns[key.column].type);
    });
  }

  const Constraint* find(std::size_t column, Constraint::Kind kind) const {
    const auto found =
        std::find_if(constraints_.begin(), constraints_.end(),
                     [&](const Constraint& c) { return c.column == column && c.kind == kind; });
    return found == constraints_.end() ? nullptr : &*found;
  }

  std::optional<IndexPlan> planOf(const jet::RealIndex& index) const {
    IndexPlan plan;
    plan.kind = IndexPlan::Kind::index;
    plan.number = index.number;
    plan.rows = tableRows_;
    std::size_t equal = 0;
    bool excludesNull = false;
    for (; equal < index.columns.size() && serves(index.columns[equal]); ++equal) {
      const std::size_t column = index.columns[equal].column;
      const Constraint* constraint = find(column, Constraint::Kind::equal);
      excludesNull = excludesNull || constraint != nullptr;
      if (constraint == nullptr) {
        constraint = find(column, Constraint::Kind::isNull);
      }
      if (constraint == nullptr) {
        break;
      }
      plan.used.push_back(*constraint);
      plan.rows *= kRowsPerEqual;
    }
    const bool oneRow = index.unique && equal == index.columns.size() && excludesNull &&
                        std::all_of(plan.used.begin(), plan.used.end(), [](const Constraint& c) {
                          return c.kind == Constraint::Kind::equal;
                        });
    plan.unique = oneRow && !hasText(index);
    if (equal < index.columns.size() && serves(index.columns[equal])) {
      for (const auto kind : {Constraint::Kind::lower, Constraint::Kind::upper}) {
        if (const Constraint* bound = find(index.columns[equal].column, kind)) {
          plan.used.push_back(*bound);
          plan.rows *= kRowsPerBound;
          excludesNull = true;
        }
      }
    }
    if (index.ignoreNulls && !excludesNull) {
      return std::nullopt;
    }
    orderBy(index, equal, plan);
    if (plan.used.empty() && !plan.ordered) {
      return std::nullopt;
    }
    plan.rows = oneRow ? 1 : std::max(plan.rows, 1.0);
    plan.cost = kSearchCost + plan.rows * kFetchCost;
    return plan;
  }

  /// Whether the index brings the rows in order: its columns after those that are held equal
  /// are the sort terms, all in its direction or all in the other.
  void orderBy(const jet::RealIndex& index, std::size_t equal, IndexPlan& plan) const {
    if (order_.empty()) {
      return;
    }
    std::size_t at = equal;
    std::optional<bool> backward;
    for (const SortTerm& term : order_) {
      const bool held = std::any_of(plan.used.begin(), plan.used.end(), [&](const Constraint& c) {
        return c.column == term.column &&
               (c.kind == Constraint::Kind::equal || c.kind == Constraint::Kind::isNull);
      });
      if (held) {
        continue;
      }
      // Keys of memos cover only their beginning.
      if (at >= index.columns.size() || index.columns[at].column != term.column ||
          !serves(index.columns[at]) || definition_.columns[term.column].type == ColumnType::memo) {
        return;
      }
      const bool against = index.columns[at].ascending == term.descending;
      if (backward.value_or(against) != against) {
        return;
      }
      backward = against;
      ++at;
    }
    plan.ordered = true;
    plan.backward = backward.value_or(false);
  }

  /// By an index in memory, on a column that has none in the file.
  std::optional<IndexPlan> lookup() const {
    for (const Constraint& constraint : constraints_) {
      const jet::IndexColumn key{constraint.column, true};
      if (constraint.kind == Constraint::Kind::equal && serves(key)) {
        IndexPlan plan;
        plan.kind = IndexPlan::Kind::lookup;
        plan.number = constraint.column;
        plan.used = {constraint};
        plan.rows = std::max(tableRows_ * kRowsPerEqual, 1.0);
        plan.cost = kSearchCost + plan.rows * kLookupCost;
        return plan;
      }
    }
    return std::nullopt;
  }

  const jet::Table& table_;
  const jet::TableDefinition& definition_;
  const jet::SortOrder& textOrder_;
  const std::vector<Constraint>& constraints_;
  const std::vector<SortTerm>& order_;
  double tableRows_;
};

}  // namespace

IndexPlan choosePlan(const jet::Table& table, const jet::SortOrder& textOrder,
                     const std::vector<Constraint>& constraints,
                     const std::vector<SortTerm>& order) {
  return Planner(table, textOrder, constraints, order).best();
}

}  // namespace orv::store::sql
