#include "cli/HistoryRows.h"

#include "commands/edit/EditHistory.h"

namespace orv::cli {

HistoryRows::HistoryRows(Format format, std::ostream& out)
    : writer_(makeRowWriter(format, {"set", "id", "name", "field", "before", "after"}, out)) {}

HistoryRows::~HistoryRows() {
  writer_->end();
}

void HistoryRows::write(const std::vector<store::HistoryChange>& changes) {
  for (const auto& detail : commands::edit::historyDetails(changes)) {
    writer_->row({detail.set, detail.id, detail.name, detail.field, detail.before, detail.after});
  }
}

}  // namespace orv::cli
