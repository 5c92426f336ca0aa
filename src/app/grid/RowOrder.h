// By which columns the rows of the grid are sorted.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "commands/RecordView.h"

namespace orv::app {

class RecordModel;

/// The columns that the rows are sorted by, the most important first. Whether numbers within the
/// texts of a column count as numbers is kept for each kind of record set.
class RowOrder {
 public:
  using Columns = std::vector<commands::SortColumn>;

  /// The model outlives it.
  explicit RowOrder(const RecordModel& model) : model_(model) {}

  /// Begins anew, with records of this kind.
  void begin(int kind);
  const Columns& columns() const { return columns_; }
  void columns(Columns columns) { columns_ = std::move(columns); }
  void add(int column, bool isAscending) { columns_.push_back(by(column, isAscending)); }
  /// Forgets columns that the records have no more.
  void shorten();

  commands::SortColumn by(int column, bool isAscending) const;
  /// The order by a column alone, ascending, or turned where it is one of the order already.
  Columns only(int column) const;
  /// The order with a column behind the others, or turned where it is one of them already.
  Columns further(int column) const;
  /// Has numbers in the texts of a column count as numbers, or no more.
  void readNumbers(int column, bool reads);

 private:
  std::pair<int, std::string> key(int column) const;

  const RecordModel& model_;
  int kind_ = -1;
  Columns columns_;
  std::set<std::pair<int, std::string>> withNumbers_;  ///< by kind and name
};

}  // namespace orv::app
