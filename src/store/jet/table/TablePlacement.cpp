#include "store/jet/table/TablePlacement.h"

#include "store/jet/definition/DefinitionPages.h"
#include "store/jet/definition/DefinitionWriter.h"
#include "store/jet/definition/MapRows.h"
#include "store/jet/index/IndexTree.h"
#include "store/jet/page/PageAllocator.h"
#include "store/jet/page/UsageMap.h"

namespace orv::store::jet {
namespace {

/// Gives a new index its map and an empty root.
void placeIndex(Pager& pager, const TableDefinition& table, RealIndex& index) {
  index.ownedPages = MapRows(pager, table).add();
  index.root = PageAllocator(pager).allocate();
  UsageMap(pager, index.ownedPages).add(index.root);
  IndexTree::initializeRoot(pager, index.root, table.page);
}

}  // namespace

void placeTable(Pager& pager, TableDefinition& table) {
  MapRows maps(pager, table);
  table.ownedPages = maps.add();
  table.freePages = maps.add();
  for (Column& column : table.columns) {
    if (column.isLongValue()) {
      column.longValuePages = maps.add();
      column.longValueFreePages = maps.add();
    }
  }
  for (RealIndex& index : table.realIndexes) {
    placeIndex(pager, table, index);
  }
  DefinitionPages definition{encodeDefinition(pager.format(), table), {}};
  writeDefinitionPages(pager, table.page, definition);
  table.morePages = std::move(definition.more);
}

}  // namespace orv::store::jet
