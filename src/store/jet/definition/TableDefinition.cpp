#include "store/jet/definition/TableDefinition.h"

#include <algorithm>

#include "store/jet/definition/DefinitionFormat.h"
#include "store/jet/definition/DefinitionPages.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

constexpr std::size_t kMaxColumns = 255;
constexpr std::size_t kMaxIndexes = 1000;
constexpr int kAccess2010 = 3;  // an engine version

/// Reads the blocks of a definition whose pages have been put together.
class DefinitionReader {
 public:
  DefinitionReader(const Pager& pager, ByteView bytes, TableDefinition& table)
      : format_(pager.format()),
        engineVersion_(pager.engineVersion()),
        codePage_(load16(&pager.header()[format_.header.codePage])),
        bytes_(bytes),
        table_(table) {}

  void read() {
    readHeader();
    readColumns();
    readRealIndexes();
    readLogicalIndexes();
    readLongValueMaps();
    sortColumns();
    resolveIndexColumns();
    findVariablePart();
  }

  void readWithoutIndexes() {
    readHeader();
    readColumns();
    sortColumns();
    findVariablePart();
  }

 private:
  void sortColumns() {
    std::sort(table_.columns.begin(), table_.columns.end(),
              [](const Column& a, const Column& b) { return a.number < b.number; });
  }

  void readHeader() {
    const auto& d = format_.definition;
    table_.systemTable = bytes_.u8(d.tableType) == kSystemTableType;
    table_.maxColumns = bytes_.u16(d.maxColumns);
    table_.variableColumns = bytes_.u16(d.variableColumns);
    columns_ = bytes_.u16(d.columnCount);
    logicalIndexes_ = bytes_.u32(d.indexCount);
    realIndexes_ = bytes_.u32(d.realIndexCount);
    table_.ownedPages = RowId::fromPointer(bytes_.u32(d.ownedPages));
    table_.freePages = RowId::fromPointer(bytes_.u32(d.freePages));
    if (columns_ > kMaxColumns || logicalIndexes_ > kMaxIndexes || realIndexes_ > kMaxIndexes) {
      raiseDamaged(table_.page, "the definition of table '" + table_.name +
                                    "' has more columns or indexes than are possible");
    }
  }

  std::string readName() {
    const std::size_t length =
        format_.definition.nameLengthSize == 1 ? bytes_.u8(at_) : bytes_.u16(at_);
    at_ += format_.definition.nameLengthSize;
    const auto name = bytes_.span(at_, length);
    at_ += length;
    return format_.unicodeText ? utf8FromUtf16(name) : decodeCodePageText(codePage_, name);
  }

  void readColumns() {
    const auto& c = format_.column;
    at_ = format_.definition.headerSize + realIndexes_ * format_.definition.realIndexEntry;
    for (std::size_t i = 0; i < columns_; ++i, at_ += c.size) {
      Column& column = table_.columns.emplace_back();
      column.type = static_cast<ColumnType>(bytes_.u8(at_ + c.type));
      column.number = bytes_.u16(at_ + c.number);
      column.variableIndex = bytes_.u16(at_ + c.variableIndex);
      column.fixedOffset = bytes_.u16(at_ + c.fixedOffset);
      column.length = bytes_.u16(at_ + c.length);
      const std::uint8_t flags = bytes_.u8(at_ + c.flags);
      column.fixed = (flags & kFixedFlag) != 0;
      column.autoNumber = (flags & kAutoNumberFlag) != 0 && column.type == ColumnType::longInteger;
      column.autoGuid = (flags & kAutoGuidFlag) != 0 && column.type == ColumnType::guid;
      column.securityId = (flags & kSecurityIdFlag) != 0;
      column.hyperlink = (flags & kHyperlinkFlag) != 0;
      if (column.type == ColumnType::numeric) {
        column.precision = bytes_.u8(at_ + c.precision);
        column.scale = bytes_.u8(at_ + c.scale);
      }
      column.sortOrder.language = bytes_.u16(at_ + c.sortOrder);
      column.sortOrder.jet3 = !format_.unicodeText;
      if (format_.unicodeText) {
        column.sortOrder.version = bytes_.u8(at_ + c.sortVersion);
        const std::uint8_t extraFlags = bytes_.u8(at_ + c.extraFlags);
        column.compressible = (extraFlags & kCompressibleFlag) != 0;
        column.calculated = engineVersion_ >= kAccess2010 && (extraFlags & kCalculatedFlags) != 0;
      }
    }
    for (Column& column : table_.columns) {
      column.name = readName();
    }
  }

  void readRealIndexes() {
    const auto& x = format_.index;
    for (std::size_t i = 0; i < realIndexes_; ++i, at_ += x.realSize) {
      RealIndex& index = table_.realIndexes.emplace_back();
      index.number = i;
      for (std::size_t k = 0; k < kMaxIndexColumns; ++k) {
        const std::uint16_t number = bytes_.u16(at_ + x.realColumns + 3 * k);
        if (number != kNoColumn) {
          index.columns.push_back({number, bytes_.u8(at_ + x.realColumns + 3 * k + 2) == 1});
        }
      }
      index.ownedPages = RowId::fromPointer(bytes_.u32(at_ + x.realUsageMap));
      index.root = bytes_.u32(at_ + x.realRoot);
      const std::uint8_t flags = bytes_.u8(at_ + x.realFlags);
      index.unique = (flags & kUniqueFlag) != 0;
      index.ignoreNulls = (flags & kIgnoreNullsFlag) != 0;
      index.required = (flags & kRequiredFlag) != 0;
    }
  }

  void readLogicalIndexes() {
    const auto& x = format_.index;
    for (std::size_t i = 0; i < logicalIndexes_; ++i, at_ += x.logicalSize) {
      LogicalIndex& index = table_.logicalIndexes.emplace_back();
      index.number = bytes_.u32(at_ + x.logicalNumber);
      index.realIndex = bytes_.u32(at_ + x.logicalReal);
      index.relationType = bytes_.u8(at_ + x.logicalRelationType);
      index.relationIndex = static_cast<std::int32_t>(bytes_.u32(at_ + x.logicalRelationIndex));
      index.relationTable = bytes_.u32(at_ + x.logicalRelationTable);
      index.cascadeUpdates = bytes_.u8(at_ + x.logicalCascadeUpdates) != 0;
      index.cascadeDeletes = bytes_.u8(at_ + x.logicalCascadeDeletes) != 0;
      index.kind = static_cast<LogicalIndex::Kind>(bytes_.u8(at_ + x.logicalType));
      if (index.realIndex >= table_.realIndexes.size()) {
        raiseDamaged(table_.page, "an index of table '" + table_.name + "' has no tree");
      }
    }
    for (LogicalIndex& index : table_.logicalIndexes) {
      index.name = readName();
    }
  }

  /// Some system tables have columns whose maps have never been made.
  std::optional<RowId> mapAt(std::size_t at) const {
    const std::uint32_t pointer = bytes_.u32(at);
    return pointer == 0 ? std::nullopt : std::optional(RowId::fromPointer(pointer));
  }

  void readLongValueMaps() {
    while (at_ + 2 <= bytes_.size()) {
      const std::uint16_t number = bytes_.u16(at_);
      if (number == kNoColumn) {
        return;
      }
      for (Column& column : table_.columns) {
        if (column.number == number) {
          column.longValuePages = mapAt(at_ + 2);
          column.longValueFreePages = mapAt(at_ + 6);
        }
      }
      at_ += 10;
    }
  }

  void resolveIndexColumns() {
    for (RealIndex& index : table_.realIndexes) {
      for (IndexColumn& key : index.columns) {
        const auto found =
            std::find_if(table_.columns.begin(), table_.columns.end(),
                         [&](const Column& column) { return column.number == key.column; });
        if (found == table_.columns.end()) {
          raiseDamaged(table_.page, "an index of table '" + table_.name +
                                        "' is over a column that is not there");
        }
        key.column = static_cast<std::size_t>(found - table_.columns.begin());
      }
    }
  }

  void findVariablePart() {
    std::size_t live = 0;
    std::uint16_t firstVariable = table_.maxColumns;
    std::uint16_t firstDeleted = 0;
    for (const Column& column : table_.columns) {
      if (!column.fixed && column.type != ColumnType::boolean) {
        ++live;
        firstVariable = std::min(firstVariable, column.number);
      }
      firstDeleted += column.number == firstDeleted ? 1 : 0;  // they come in this order
    }
    table_.variableAbove = firstVariable;
    table_.variablePerhaps =
        live < table_.variableColumns ? std::min(firstDeleted, firstVariable) : firstVariable;
  }

  const Format& format_;
  int engineVersion_;
  std::uint16_t codePage_;
  ByteView bytes_;
  TableDefinition& table_;
  std::size_t columns_ = 0;
  std::size_t logicalIndexes_ = 0;
  std::size_t realIndexes_ = 0;
  std::size_t at_ = 0;
};

}  // namespace

ColumnInfo describe(const Column& column) {
  const bool hasSize = column.type == ColumnType::text || column.type == ColumnType::binary;
  const std::size_t characterSize = column.sortOrder.jet3 ? 1 : 2;
  return {.name = column.name,
          .type = column.type == ColumnType::extendedDate ? ColumnType::dateTime : column.type,
          .size = !hasSize                          ? 0
                  : column.type == ColumnType::text ? column.length / characterSize
                                                    : column.length,
          .autoNumber = column.autoNumber,
          .required = column.required,
          .allowZeroLength = column.allowZeroLength,
          .precision = column.precision,
          .scale = column.scale,
          .defaultValue = column.defaultValue};
}

std::optional<std::size_t> TableDefinition::findColumn(std::string_view column) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (sameName(columns[i].name, column)) return i;
  }
  return std::nullopt;
}

std::shared_ptr<TableDefinition> readTableDefinition(Pager& pager, PageNumber page,
                                                     const std::string& name) {
  auto table = std::make_shared<TableDefinition>();
  table->name = name;
  table->page = page;
  DefinitionPages definition = readDefinitionPages(pager, page, name);
  table->morePages = std::move(definition.more);
  DefinitionReader(pager, {definition.bytes, page}, *table).read();
  return table;
}

std::shared_ptr<TableDefinition> readTableColumns(const Pager& pager, const Bytes& bytes,
                                                  PageNumber page, const std::string& name) {
  auto table = std::make_shared<TableDefinition>();
  table->name = name;
  table->page = page;
  DefinitionReader(pager, {bytes, page}, *table).readWithoutIndexes();
  return table;
}

}  // namespace orv::store::jet
