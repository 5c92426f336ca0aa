#include "store/jet/table/IndexBuilder.h"

#include <fmt/format.h>

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/definition/DefinitionPages.h"
#include "store/jet/definition/DefinitionWriter.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/index/IndexRun.h"
#include "store/jet/table/TablePlacement.h"

namespace orv::store::jet {
namespace {

struct Entry {
  Bytes key;
  RowId row;
  bool hasNull;
  auto operator<=>(const Entry&) const = default;
};

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

[[noreturn]] void refuse(const TableDefinition& table, const std::string& why) {
  throw Error(kDuplicateKey, fmt::format("Index '{}' of table '{}' was not made, since {}.",
                                         table.logicalIndexes.back().name, table.name, why));
}

std::vector<Entry> sortedEntries(const Table& table, const TableDefinition& definition,
                                 const RealIndex& index) {
  std::vector<Entry> entries;
  for (TableScan scan = table.scan(); scan.next();) {
    const std::vector<Value> values = keyValues(definition, index, scan.row());
    const bool hasNull = anyNull(index, values);
    if (hasNull && index.required) {
      refuse(definition, fmt::format("a row has no value in a column of it ({})",
                                     describeValues(index, values)));
    }
    if (hasEntry(index, values)) {
      entries.push_back({makeKey(definition, index, values), scan.rowId(), hasNull});
    }
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

/// The number of different keys. Refuses rows that a unique index does not allow.
std::uint32_t countKeys(const Table& table, const TableDefinition& definition,
                        const RealIndex& index, const std::vector<Entry>& entries) {
  std::uint32_t count = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (i == 0 || entries[i].key != entries[i - 1].key) {
      ++count;
    } else if (index.unique && !entries[i].hasNull) {
      const auto row = table.row(entries[i].row);
      refuse(definition,
             fmt::format("several rows have the same values ({})",
                         row ? describeValues(index, keyValues(definition, index, *row)) : ""));
    }
  }
  return count;
}

}  // namespace

void buildLastIndex(const Table& table, TableDefinition& definition) {
  Pager& pager = table.pager();
  RealIndex& index = definition.realIndexes.back();
  const std::vector<Entry> entries = sortedEntries(table, definition, index);
  const std::uint32_t keyCount = countKeys(table, definition, index, entries);
  placeIndex(pager, table.definition(), index);
  IndexRun run(pager, index, definition.page);
  for (const Entry& entry : entries) {
    run.insert(entry.key, entry.row);
  }
  DefinitionPages pages = readDefinitionPages(pager, definition.page, definition.name);
  addIndex(pager.format(), pages.bytes, definition, index, definition.logicalIndexes.back(),
           keyCount);
  writeDefinitionPages(pager, definition.page, pages);
  definition.morePages = std::move(pages.more);
}

}  // namespace orv::store::jet
