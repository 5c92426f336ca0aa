// What changes of a history have done, on standard output.
#pragma once

#include <memory>
#include <ostream>
#include <vector>

#include "cli/RowWriter.h"
#include "store/History.h"

namespace orv::cli {

/// A line a field, or a record, or the rows of one that came or went.
class HistoryRows {
 public:
  HistoryRows(Format format, std::ostream& out);
  ~HistoryRows();

  void write(const std::vector<store::HistoryChange>& changes);

 private:
  std::unique_ptr<RowWriter> writer_;
};

}  // namespace orv::cli
