#include "store/jet/definition/DefinitionWriter.h"

#include <algorithm>
#include <numeric>

#include "store/jet/definition/DefinitionFormat.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

Bytes nameBytes(const std::string& name) {
  const Bytes text = utf16Bytes(name);
  Bytes bytes(2);
  store16(bytes.data(), static_cast<std::uint32_t>(text.size()));
  bytes.insert(bytes.end(), text.begin(), text.end());
  return bytes;
}

void append(Bytes& out, const Bytes& more) {
  out.insert(out.end(), more.begin(), more.end());
}

Bytes headerBytes(const Format& format, const TableDefinition& table) {
  const auto& d = format.definition;
  Bytes header(d.headerSize);
  store32(&header[d.length + 4], kDefinitionMagic);
  header[d.autoNumberFlag] = 1;  // without it the engine hands out no automatic numbers
  header[d.tableType] = table.systemTable ? kSystemTableType : kUserTableType;
  store16(&header[d.maxColumns], table.maxColumns);
  store16(&header[d.variableColumns], table.variableColumns);
  store16(&header[d.columnCount], static_cast<std::uint32_t>(table.columns.size()));
  store32(&header[d.ownedPages], table.ownedPages.toPointer());
  store32(&header[d.freePages], table.freePages.toPointer());
  return header;
}

std::uint8_t columnFlags(const TableDefinition& table, const Column& column) {
  std::uint8_t flags = kUpdatableFlag;
  const auto setIf = [&](bool condition, std::uint8_t flag) {
    flags = static_cast<std::uint8_t>(condition ? flags | flag : flags);
  };
  setIf(column.fixed, kFixedFlag);
  setIf(column.autoNumber, kAutoNumberFlag);
  setIf(table.systemTable, kSystemColumnFlag);
  setIf(column.securityId, kSecurityIdFlag);
  setIf(column.autoGuid, kAutoGuidFlag);
  setIf(column.hyperlink, kHyperlinkFlag);
  return flags;
}

Bytes columnBytes(const Format& format, const TableDefinition& table, const Column& column) {
  const auto& c = format.column;
  Bytes block(c.size);
  block[c.type] = static_cast<std::uint8_t>(column.type);
  store32(&block[c.type + 1], kDefinitionMagic);
  store16(&block[c.number], column.number);
  store16(&block[c.variableIndex], column.variableIndex);
  store16(&block[c.variableIndex + 2], table.systemTable ? 0 : column.number);  // its place on show
  if (column.type == ColumnType::numeric) {
    block[c.precision] = column.precision;
    block[c.scale] = column.scale;
  } else {
    store16(&block[c.sortOrder], column.sortOrder.language);
    block[c.sortVersion] = column.sortOrder.version;
  }
  block[c.flags] = columnFlags(table, column);
  block[c.extraFlags] = column.compressible ? kCompressibleFlag : 0;
  store16(&block[c.fixedOffset], column.fixedOffset);
  store16(&block[c.length], column.length);
  return block;
}

/// The order in which the columns are listed: in system tables that of their names.
std::vector<std::size_t> listingOrder(const TableDefinition& table) {
  std::vector<std::size_t> order(table.columns.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (table.systemTable) {
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      return foldName(table.columns[a].name) < foldName(table.columns[b].name);
    });
  }
  return order;
}

Bytes longValueMapBytes(const Column& column) {
  Bytes block(kLongValueMapsSize);
  store16(block.data(), column.number);
  store32(&block[2], column.longValuePages.value().toPointer());
  store32(&block[6], column.longValueFreePages.value().toPointer());
  return block;
}

Bytes realIndexBytes(const Format& format, const TableDefinition& table, const RealIndex& index) {
  const auto& x = format.index;
  Bytes block(x.realSize);
  store32(block.data(), kRealIndexMagic);
  for (std::size_t i = 0; i < kMaxIndexColumns; ++i) {
    std::uint8_t* at = &block[x.realColumns + 3 * i];
    if (i < index.columns.size()) {
      store16(at, table.columns[index.columns[i].column].number);
      at[2] = index.columns[i].ascending ? kAscending : 0;
    } else {
      store16(at, kNoColumn);
    }
  }
  store32(&block[x.realUsageMap], index.ownedPages.toPointer());
  store32(&block[x.realRoot], index.root);
  block[x.realFlags] = static_cast<std::uint8_t>(kJet4IndexFlag | (index.unique ? kUniqueFlag : 0) |
                                                 (index.ignoreNulls ? kIgnoreNullsFlag : 0) |
                                                 (index.required ? kRequiredFlag : 0));
  return block;
}

Bytes logicalIndexBytes(const Format& format, const LogicalIndex& index) {
  const auto& x = format.index;
  Bytes block(x.logicalSize);
  store32(block.data(), kDefinitionMagic);
  store32(&block[x.logicalNumber], index.number);
  store32(&block[x.logicalReal], static_cast<std::uint32_t>(index.realIndex));
  store32(&block[x.logicalRelationIndex], static_cast<std::uint32_t>(index.relationIndex));
  if (index.relationTable != 0) {
    block[x.logicalRelationType] = index.relationType;
    store32(&block[x.logicalRelationTable], index.relationTable);
    block[x.logicalCascadeUpdates] = index.cascadeUpdates ? 1 : 0;
    block[x.logicalCascadeDeletes] = index.cascadeDeletes ? 1 : 0;
  } else {
    block[x.logicalCascadeUpdates] = kNoCascade;
    block[x.logicalCascadeDeletes] = kNoCascade;
  }
  block[x.logicalType] = static_cast<std::uint8_t>(index.kind);
  return block;
}

/// Where the parts of a definition begin that a new tree or named index adds to.
struct IndexPlaces {
  std::size_t counters;    ///< after the last tree's counters
  std::size_t real;        ///< after the last tree's block
  std::size_t logical;     ///< before the block of the first name after the new one
  std::size_t name;        ///< before that name
  std::size_t afterNames;  ///< the maps of long values
};

/// Names of indexes are listed in their order.
IndexPlaces findPlaces(const Format& format, const ByteView& bytes, const std::string& newName) {
  const auto& d = format.definition;
  const std::size_t realCount = bytes.u32(d.realIndexCount);
  const std::size_t logicalCount = bytes.u32(d.indexCount);
  const std::size_t columnCount = bytes.u16(d.columnCount);
  IndexPlaces places{};
  places.counters = d.headerSize + realCount * d.realIndexEntry;
  std::size_t at = places.counters + columnCount * format.column.size;
  for (std::size_t i = 0; i < columnCount; ++i) {
    at += 2 + std::size_t{bytes.u16(at)};
  }
  places.real = at + realCount * format.index.realSize;
  at = places.real + logicalCount * format.index.logicalSize;
  places.logical = at;
  const std::string folded = foldName(newName);
  for (std::size_t i = 0; i < logicalCount; ++i) {
    const std::size_t length = bytes.u16(at);
    if (places.name == 0 && folded < foldName(utf8FromUtf16(bytes.span(at + 2, length)))) {
      places.logical = places.real + i * format.index.logicalSize;
      places.name = at;
    }
    at += 2 + length;
  }
  places.name = places.name == 0 ? at : places.name;
  places.afterNames = at;
  return places;
}

void insert(Bytes& bytes, std::size_t at, const Bytes& block) {
  bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), block.begin(), block.end());
}

std::size_t findEnd(const ByteView& bytes, std::size_t longValueMaps) {
  std::size_t at = longValueMaps;
  while (bytes.u16(at) != kNoColumn) {
    at += kLongValueMapsSize;
  }
  return at + 2;
}

}  // namespace

Bytes encodeDefinition(const Format& format, const TableDefinition& table) {
  Bytes bytes = headerBytes(format, table);
  const std::vector<std::size_t> order = listingOrder(table);
  for (const std::size_t i : order) {
    append(bytes, columnBytes(format, table, table.columns[i]));
  }
  for (const std::size_t i : order) {
    append(bytes, nameBytes(table.columns[i].name));
  }
  for (const std::size_t i : order) {
    if (table.columns[i].isLongValue()) {
      append(bytes, longValueMapBytes(table.columns[i]));
    }
  }
  append(bytes, {0xff, 0xff});
  for (const RealIndex& real : table.realIndexes) {
    addTree(format, bytes, table, real, 0);
  }
  for (const LogicalIndex& logical : table.logicalIndexes) {
    addIndexName(format, bytes, table, logical);
  }
  return bytes;
}

void addTree(const Format& format, Bytes& definition, const TableDefinition& table,
             const RealIndex& real, std::uint32_t keyCount) {
  const auto& d = format.definition;
  const ByteView view(definition, table.page);
  const IndexPlaces places = findPlaces(format, view, "");
  definition.resize(findEnd(view, places.afterNames));
  Bytes counters(d.realIndexEntry);
  store32(&counters[d.realIndexRowCount], keyCount);
  // From the back to the front, so that each place is still where it was.
  insert(definition, places.real, realIndexBytes(format, table, real));
  insert(definition, places.counters, counters);
  store32(&definition[d.realIndexCount], load32(&definition[d.realIndexCount]) + 1);
}

void addIndexName(const Format& format, Bytes& definition, const TableDefinition& table,
                  const LogicalIndex& logical) {
  const auto& d = format.definition;
  const ByteView view(definition, table.page);
  const IndexPlaces places = findPlaces(format, view, logical.name);
  insert(definition, places.name, nameBytes(logical.name));
  insert(definition, places.logical, logicalIndexBytes(format, logical));
  store32(&definition[d.indexCount], load32(&definition[d.indexCount]) + 1);
}

}  // namespace orv::store::jet
