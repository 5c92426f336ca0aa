// The new numbers of a database's tables.
#pragma once

#include <map>
#include <string_view>

#include "store/Value.h"
#include "store/jet/file/Bytes.h"

namespace orv::store::jet {

/// A table is known, in the catalogue and elsewhere, by the page of its definition. In a copy that
/// page is another.
class TableNumbers {
 public:
  void add(PageNumber former, PageNumber now) { now_[former] = now; }
  /// `former` itself where it is no table's.
  PageNumber operator[](PageNumber former) const;
  bool contains(PageNumber former) const { return now_.contains(former); }

  /// Whether the column of a system table holds numbers of objects, tables among them.
  static bool isIn(std::string_view table, std::string_view column);

 private:
  std::map<PageNumber, PageNumber> now_{};
};

}  // namespace orv::store::jet
