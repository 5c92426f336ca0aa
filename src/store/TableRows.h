// The rows of a table in their order, visited as needed.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

#include "store/jet/table/Table.h"

namespace orv::store {

/// All rows of a table, or a given list of them, by position. Positions are only worked out as
/// far as somebody asks; the rows of a table stand in the order of their places in the file.
class TableRows {
 public:
  explicit TableRows(std::shared_ptr<jet::Table> table);
  TableRows(std::shared_ptr<jet::Table> table, const std::vector<jet::RowId>& rows);

  /// The row at a position; none past the end.
  std::optional<jet::RowId> at(std::size_t position);
  /// The position of a row that is in the list. For a whole table, the rows before it are read.
  std::size_t positionOf(jet::RowId row);
  /// The row after one that is in the list; none after the last.
  std::optional<jet::RowId> after(jet::RowId row);
  /// Whether all rows of the table are in it.
  bool isWholeTable() const { return whole_; }
  /// Number of rows.
  std::size_t count();
  /// Takes in a row that has been added to the table, at its place (or at the end of a list).
  void add(jet::RowId row);
  void remove(std::size_t position);

 private:
  void readTo(std::size_t position);

  std::shared_ptr<jet::Table> table_;
  bool whole_;
  std::optional<jet::TableScan> scan_;  ///< stands on the last of `known_`; none at the end
  bool hasMore_ = false;  ///< rows have been added since to a page that the scan may have read
  std::optional<jet::TableScan> walk_;  ///< stands on the row that after() gave last
  std::deque<jet::RowId> known_;        ///< whose first ones are removed as cheaply as its last
  struct Counted {
    std::size_t rows;
    std::uint64_t version;  ///< of the file when they were counted
  };
  std::optional<Counted> counted_;  ///< of the whole table
};

}  // namespace orv::store
