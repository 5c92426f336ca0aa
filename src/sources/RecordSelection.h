// A choice of records of one data source.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sources/datasource.h"

namespace orv::sources {

/// The identifiers of the chosen records and the node they belong to; never the records' content.
/// Set RecordsCount first, then DataSourcePtr, then the identifiers.
///
/// The selection keeps its node and the node's parent alive, so that a pending copy can be pasted
/// after its source was removed from the list.
class RecordSelection {
 public:
  static RecordSelection of(std::shared_ptr<datasource> node,
                            const std::vector<std::string>& identifiers);

  /// Identifier at a position from 1. Raises kSubscriptOutOfRange outside the array, which always
  /// has one slot at least.
  const std::string& SelectedRecordID(std::int32_t index) const;
  void SelectedRecordID(std::int32_t index, std::string value);

  std::int32_t RecordsCount() const { return count_; }
  /// Empties every identifier. Raises kSubscriptOutOfRange for a negative count.
  void RecordsCount(std::int32_t value);

  const std::shared_ptr<datasource>& DataSourcePtr() const { return node_; }
  void DataSourcePtr(std::shared_ptr<datasource> value);

  bool HasRecords() const { return count_ >= 1; }

  /// The same identifiers of the same node; later changes to either leave the other as it is.
  RecordSelection Clone() const { return *this; }

 private:
  std::size_t slot(std::int32_t index) const;

  std::vector<std::string> identifiers_ = std::vector<std::string>(1);
  std::int32_t count_ = 0;
  std::shared_ptr<datasource> node_;
  std::shared_ptr<datasource> parent_;
};

}  // namespace orv::sources
