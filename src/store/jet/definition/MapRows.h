// Room for the usage maps of one table.
#pragma once

#include <vector>

#include "store/jet/definition/TableDefinition.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Adds usage maps to data pages that hold nothing else and belong to no table: those on which
/// the table has maps already, then new ones. Needs a transaction.
class MapRows {
 public:
  MapRows(Pager& pager, const TableDefinition& table);
  /// A new, empty map.
  RowId add();

 private:
  bool takes(PageNumber page) const;

  Pager& pager_;
  std::vector<PageNumber> pages_;
};

}  // namespace orv::store::jet
