#include "store/TableRows.h"

#include <algorithm>
#include <utility>

namespace orv::store {

TableRows::TableRows(std::shared_ptr<jet::Table> table)
    : table_(std::move(table)), whole_(true), scan_(table_->scan()) {}

TableRows::TableRows(std::shared_ptr<jet::Table> table, const std::vector<jet::RowId>& rows)
    : table_(std::move(table)), whole_(false), known_(rows.begin(), rows.end()) {}

void TableRows::readTo(std::size_t position) {
  if (scan_ && std::exchange(hasMore_, false)) {
    scan_ = table_->scan();
    if (!known_.empty()) scan_->seekAfter(known_.back());
  }
  while (scan_ && known_.size() <= position) {
    if (!scan_->next()) {
      scan_.reset();
    } else if (known_.empty() || known_.back() < scan_->rowId()) {
      known_.push_back(scan_->rowId());
    }
  }
}

std::optional<jet::RowId> TableRows::at(std::size_t position) {
  readTo(position);
  return position < known_.size() ? std::optional(known_[position]) : std::nullopt;
}

std::size_t TableRows::positionOf(jet::RowId row) {
  if (!whole_) {
    return static_cast<std::size_t>(std::find(known_.begin(), known_.end(), row) - known_.begin());
  }
  while (scan_ && (known_.empty() || known_.back() < row)) {
    readTo(known_.size());
  }
  return static_cast<std::size_t>(std::lower_bound(known_.begin(), known_.end(), row) -
                                  known_.begin());
}

std::optional<jet::RowId> TableRows::after(jet::RowId row) {
  if (!whole_) {
    return at(positionOf(row) + 1);
  }
  if (!walk_ || walk_->rowId() != row) {
    walk_ = table_->scan();
    walk_->seekAfter(row);
  }
  if (!walk_->next()) {
    walk_.reset();
    return std::nullopt;
  }
  return walk_->rowId();
}

std::size_t TableRows::count() {
  if (!whole_ || !scan_) {
    return known_.size();
  }
  const jet::Pager& pager = table_->pager();
  if (!counted_ || counted_->version != pager.version() || pager.inTransaction()) {
    counted_ = Counted{table_->countRows(), pager.version()};
  }
  return counted_->rows;
}

void TableRows::add(jet::RowId row) {
  if (!whole_) {
    known_.push_back(row);
    return;
  }
  const auto place = std::lower_bound(known_.begin(), known_.end(), row);
  if (place == known_.end() && scan_) {
    hasMore_ = true;  // It will be come upon in its turn.
  } else if (place == known_.end() || *place != row) {
    known_.insert(place, row);
  }
}

void TableRows::remove(std::size_t position) {
  if (position < known_.size()) {
    known_.erase(known_.begin() + static_cast<std::ptrdiff_t>(position));
  }
}

}  // namespace orv::store
