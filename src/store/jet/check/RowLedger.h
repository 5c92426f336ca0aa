// A set of places of rows.
#pragma once

#include <bitset>
#include <unordered_map>

#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Rows that something points at. Takes some 40 bytes a page.
class RowLedger {
 public:
  /// Notes a row; false when it has been noted before.
  bool mark(RowId id) {
    auto& rows = pages_[id.page];
    const bool isNew = !rows[id.row];
    rows.set(id.row);
    return isNew;
  }
  bool contains(RowId id) const {
    const auto found = pages_.find(id.page);
    return found != pages_.end() && found->second[id.row];
  }

 private:
  std::unordered_map<PageNumber, std::bitset<256>> pages_;
};

}  // namespace orv::store::jet
