#include "store/jet/table/IndexBuilder.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/definition/DefinitionPages.h"
#include "store/jet/definition/DefinitionWriter.h"
#include "store/jet/definition/MapRows.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/index/IndexLoader.h"
#include "store/jet/page/PageAllocator.h"
#include "store/jet/page/UsageMap.h"

namespace orv::store::jet {
namespace {

/// The values of the index's columns in a row; those of other columns are left Null.
std::vector<Value> keyValues(const TableDefinition& table, const RealIndex& index,
                             const RowView& row) {
  std::vector<Value> values(table.columns.size());
  for (const IndexColumn& key : index.columns) {
    values[key.column] = row.value(table.columns[key.column]);
  }
  return values;
}

std::string describeValues(const RealIndex& index, std::span<const Value> values) {
  std::string text;
  for (const IndexColumn& key : index.columns) {
    const Value& value = values[key.column];
    text += text.empty() ? "" : ", ";
    text += value.isNull() ? "Null" : value.getIf<Bytes>() ? "(bytes)" : value.toText();
  }
  return text;
}

[[noreturn]] void refuse(const TableDefinition& table, const RealIndex& index,
                         const std::string& why) {
  const auto name = std::ranges::find(table.logicalIndexes, index.number, &LogicalIndex::realIndex);
  throw Error(kDuplicateKey,
              fmt::format("Index '{}' of table '{}' was not made, since {}.",
                          name == table.logicalIndexes.end() ? "" : name->name, table.name, why));
}

EntrySorter entriesOf(const Table& table, const TableDefinition& definition,
                      const RealIndex& index) {
  EntrySorter entries;
  for (TableScan scan = table.scan(); scan.next();) {
    const std::vector<Value> values = keyValues(definition, index, scan.row());
    const bool hasNull = anyNull(index, values);
    if (hasNull && index.required) {
      refuse(
          definition, index,
          fmt::format("a row has no value in a column of it ({})", describeValues(index, values)));
    }
    if (hasEntry(index, values)) {
      entries.add(scan.rowId(), hasNull, [&](Bytes& bytes) {
        const Bytes key = makeKey(definition, index, values);
        bytes.insert(bytes.end(), key.begin(), key.end());
      });
    }
  }
  return entries;
}

}  // namespace

std::uint32_t buildTree(const Table& table, const TableDefinition& definition, RealIndex& index) {
  Pager& pager = table.pager();
  EntrySorter entries = entriesOf(table, definition, index);
  index.ownedPages = MapRows(pager, definition).add();
  PageAllocator allocator(pager);
  UsageMap pages(pager, index.ownedPages);
  IndexLoader loader(pager, definition.page, [&] {
    const PageNumber page = allocator.allocate();
    pages.add(page);
    return page;
  });
  const std::uint32_t keys = loader.addAll(entries, [&](std::size_t i) {
    if (index.unique) {
      const auto row = table.row(entries.row(i));
      refuse(definition, index,
             fmt::format("several rows have the same values ({})",
                         row ? describeValues(index, keyValues(definition, index, *row)) : ""));
    }
  });
  index.root = loader.finish();
  return keys;
}

void buildLastIndex(const Table& table, TableDefinition& definition) {
  Pager& pager = table.pager();
  RealIndex& index = definition.realIndexes.back();
  const std::uint32_t keys = buildTree(table, definition, index);
  DefinitionPages pages = readDefinitionPages(pager, definition.page, definition.name);
  addTree(pager.format(), pages.bytes, definition, index, keys);
  addIndexName(pager.format(), pages.bytes, definition, definition.logicalIndexes.back());
  writeDefinitionPages(pager, definition.page, pages);
  definition.morePages = std::move(pages.more);
}

}  // namespace orv::store::jet
