#include "app/grid/RowOrder.h"

#include <algorithm>

#include "app/grid/RecordModel.h"

namespace orv::app {

namespace {

template <class Columns>
auto placeOf(Columns& columns, int column) {
  return std::ranges::find(columns, static_cast<std::size_t>(column),
                           &commands::SortColumn::column);
}

}  // namespace

void RowOrder::begin(int kind) {
  kind_ = kind;
  columns_.clear();
}

void RowOrder::shorten() {
  const auto count = static_cast<std::size_t>(model_.columnCount());
  std::erase_if(columns_, [&](const auto& by) { return by.column >= count; });
}

std::pair<int, std::string> RowOrder::key(int column) const {
  return {kind_, model_.recordColumns()[column].name};
}

commands::SortColumn RowOrder::by(int column, bool isAscending) const {
  return {static_cast<std::size_t>(column), isAscending, withNumbers_.contains(key(column))};
}

RowOrder::Columns RowOrder::only(int column) const {
  const auto found = placeOf(columns_, column);
  return {by(column, found == columns_.end() || !found->isAscending)};
}

RowOrder::Columns RowOrder::further(int column) const {
  Columns columns = columns_;
  const auto found = placeOf(columns, column);
  if (found == columns.end()) {
    columns.push_back(by(column, true));
  } else {
    found->isAscending = !found->isAscending;
  }
  return columns;
}

void RowOrder::readNumbers(int column, bool reads) {
  if (reads) {
    withNumbers_.insert(key(column));
  } else {
    withNumbers_.erase(key(column));
  }
  const auto found = placeOf(columns_, column);
  if (found != columns_.end()) found->readsNumbers = reads;
}

}  // namespace orv::app
