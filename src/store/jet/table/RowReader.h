// Rows of a table, read one after another by their places.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "store/jet/table/Table.h"

namespace orv::store::jet {

/// Reads rows of one table by their places. Rows that follow each other on one page are read
/// under one lock of the file: what another program changes on that page shows within a second,
/// what this process changes at once.
class RowReader {
 public:
  explicit RowReader(std::shared_ptr<const Table> table) : table_(std::move(table)) {}

  const Table& table() const { return *table_; }
  /// The row at `id`, valid until the next call; null when it was deleted or never was.
  const RowView* read(RowId id);

 private:
  bool hasPage(PageNumber page) const;
  void readPage(PageNumber page);

  std::shared_ptr<const Table> table_;
  PageRef page_{};
  DataPage rows_{};            ///< of `page_`
  std::uint64_t version_ = 0;  ///< of the pager when the page was read
  std::chrono::steady_clock::time_point readAt_{};
  RowView row_{};
};

}  // namespace orv::store::jet
