#include "store/jet/definition/MapRows.h"

#include <algorithm>

#include "store/jet/page/DataPage.h"
#include "store/jet/page/PageAllocator.h"
#include "store/jet/page/UsageMap.h"

namespace orv::store::jet {

MapRows::MapRows(Pager& pager, const TableDefinition& table) : pager_(pager) {
  const auto addPage = [&](RowId map) {
    if (map.page != 0 && std::find(pages_.begin(), pages_.end(), map.page) == pages_.end()) {
      pages_.push_back(map.page);
    }
  };
  addPage(table.ownedPages);
  for (const RealIndex& index : table.realIndexes) {
    addPage(index.ownedPages);
  }
}

bool MapRows::takes(PageNumber page) const {
  const PageRef ref = pager_.read(page);
  const DataPage data(pager_.format(), ref.view());
  return data.owner() == 0 && data.takes(UsageMap::emptyRow(pager_.format()).size());
}

RowId MapRows::add() {
  auto page = std::find_if(pages_.begin(), pages_.end(), [&](PageNumber p) { return takes(p); });
  if (page == pages_.end()) {
    page = pages_.insert(page, PageAllocator(pager_).allocate());
    DataPageEditor(pager_.format(), pager_.modify(*page), *page).initialize(0);
  }
  DataPageEditor editor(pager_.format(), pager_.modify(*page), *page);
  return {*page, editor.add(UsageMap::emptyRow(pager_.format()))};
}

}  // namespace orv::store::jet
