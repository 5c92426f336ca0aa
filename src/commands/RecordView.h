// The records of a table that a user wants to see, in the order wanted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands/CellFilter.h"
#include "commands/RecordTable.h"

namespace orv::commands {

/// A column that rows are sorted by.
struct SortColumn {
  std::size_t column = 0;
  bool isAscending = true;
  /// Whether numbers within texts count as numbers: "pane 2" before "pane 10".
  bool readsNumbers = false;
};

/// Filters and sorts a table without copying it. The rows are gone through a step at a time, so
/// that whoever shows them stays responsive whatever the size of the table.
class RecordView {
 public:
  /// Fields are shown, and so compared with filters, with `digits` significant digits.
  RecordView(std::unique_ptr<RecordTable> table, int digits)
      : table_(std::move(table)), digits_(digits) {}

  const std::vector<RecordColumn>& columns() const { return table_->columns(); }

  /// Rows found so far.
  std::size_t count() const;
  /// Rows of the table read so far.
  std::size_t rowsRead() const { return table_->rowsRead(); }
  /// What identifies these, in the table's order.
  std::vector<std::string> identifiersRead() const;
  store::Value value(std::size_t row, std::size_t column) const;
  /// What is shown of a field.
  std::string text(std::size_t row, std::size_t column) const;

  /// Whether all rows of the table have been gone through.
  bool isComplete() const;
  /// Goes through up to `rows` further rows of the table.
  void advance(std::size_t rows);

  /// Fills fields of the table as RecordTable has it. They are sorted and filtered by as they were
  /// when that began.
  bool fillNext() { return table_->fillNext(); }
  std::size_t rowsFilled() const { return table_->rowsFilled(); }
  /// Whether nothing is left to fill of the rows that have been read.
  bool isFilled() const { return table_->rowsFilled() >= table_->rowsRead(); }

  /// Shows only rows whose fields pass all filters, one a column in their order. Begins anew.
  void filter(const std::vector<std::string>& texts);
  bool isFiltered() const { return !filters_.empty(); }

  /// Reads the whole table and puts it in order by the first of the columns, rows that are equal
  /// there by the next: numbers as numbers, texts without regard to case, empty fields first. Rows
  /// that are equal in all keep their order. Begins anew.
  void sort(const std::vector<SortColumn>& columns);

  int digits() const { return digits_; }
  /// Begins anew.
  void digits(int value);

  /// The first field, from `start` on row by row, whose text contains `text`; searching begins
  /// again at the other end. Position counts fields: row times columns plus column.
  std::optional<std::size_t> find(const std::string& text, std::size_t start, bool forward);

 private:
  struct ColumnFilter {
    std::size_t column;
    CellFilter filter;
  };

  bool accepts(std::size_t tableRow) const;
  std::size_t tableRow(std::size_t row) const;
  void restart();

  std::unique_ptr<RecordTable> table_;
  int digits_;
  std::vector<ColumnFilter> filters_;
  std::vector<std::uint32_t> order_;    ///< rows of the table as sorted; empty when not sorted
  std::vector<std::uint32_t> matches_;  ///< rows that pass; unused when nothing is filtered
  std::size_t gone_ = 0;                ///< rows of the order that have been gone through
};

}  // namespace orv::commands
