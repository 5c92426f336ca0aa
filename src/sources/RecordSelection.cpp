#include "sources/RecordSelection.h"

#include <algorithm>

#include "errors/Error.h"

namespace orv::sources {

RecordSelection RecordSelection::of(std::shared_ptr<datasource> node,
                                    const std::vector<std::string>& identifiers) {
  RecordSelection selection;
  selection.RecordsCount(static_cast<std::int32_t>(identifiers.size()));
  selection.DataSourcePtr(std::move(node));
  std::ranges::copy(identifiers, selection.identifiers_.begin());
  return selection;
}

const std::string& RecordSelection::SelectedRecordID(std::int32_t index) const {
  return identifiers_[slot(index)];
}

void RecordSelection::SelectedRecordID(std::int32_t index, std::string value) {
  identifiers_[slot(index)] = std::move(value);
}

void RecordSelection::RecordsCount(std::int32_t value) {
  if (value < 0) {
    throw Error(kSubscriptOutOfRange, "A selection cannot have fewer than no records.");
  }
  identifiers_.assign(static_cast<std::size_t>(std::max(value, 1)), std::string());
  count_ = value;
}

void RecordSelection::DataSourcePtr(std::shared_ptr<datasource> value) {
  node_ = std::move(value);
  parent_ = node_ ? node_->Parent() : nullptr;
}

std::size_t RecordSelection::slot(std::int32_t index) const {
  if (index < 1 || static_cast<std::size_t>(index) > identifiers_.size()) {
    throw Error(kSubscriptOutOfRange,
                "There is no selected record number " + std::to_string(index) + ".");
  }
  return static_cast<std::size_t>(index - 1);
}

}  // namespace orv::sources
