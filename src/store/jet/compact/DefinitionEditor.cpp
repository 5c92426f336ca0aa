#include "store/jet/compact/DefinitionEditor.h"

#include "store/jet/definition/DefinitionFormat.h"

namespace orv::store::jet {

DefinitionEditor::DefinitionEditor(const Format& format, Bytes& bytes, PageNumber page)
    : format_(format), bytes_(bytes) {
  const auto& d = format.definition;
  const ByteView view(bytes, page);
  realIndexes_ = view.u32(d.realIndexCount);
  logicalIndexes_ = view.u32(d.indexCount);
  const std::size_t columns = view.u16(d.columnCount);
  std::size_t at = d.headerSize + realIndexes_ * d.realIndexEntry + columns * format.column.size;
  const auto skipNames = [&](std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      at += d.nameLengthSize + view.u16(at);
    }
  };
  skipNames(columns);
  real_ = at;
  logical_ = real_ + realIndexes_ * format.index.realSize;
  at = logical_ + logicalIndexes_ * format.index.logicalSize;
  skipNames(logicalIndexes_);
  longValueMaps_ = at;
  while (view.u16(at) != kNoColumn) {
    at += kLongValueMapsSize;
  }
  bytes.resize(at + 2);
}

void DefinitionEditor::setRowCount(std::uint32_t rows) {
  store32(&bytes_[format_.definition.rowCount], rows);
}

void DefinitionEditor::setRowMaps(RowId pages, RowId pagesWithRoom) {
  store32(&bytes_[format_.definition.ownedPages], pages.toPointer());
  store32(&bytes_[format_.definition.freePages], pagesWithRoom.toPointer());
}

void DefinitionEditor::setIndex(std::size_t realIndex, PageNumber root, RowId pages,
                                std::uint32_t keys) {
  const auto& d = format_.definition;
  const std::size_t block = real_ + realIndex * format_.index.realSize;
  store32(&bytes_[block + format_.index.realRoot], root);
  store32(&bytes_[block + format_.index.realUsageMap], pages.toPointer());
  store32(&bytes_[d.headerSize + realIndex * d.realIndexEntry + d.realIndexRowCount], keys);
}

void DefinitionEditor::allow(std::size_t realIndex, bool repeated, bool nulls) {
  const auto& x = format_.index;
  std::uint8_t& flags = bytes_[real_ + realIndex * x.realSize + x.realFlags];
  const bool wasUnique = (flags & kUniqueFlag) != 0;
  flags &= static_cast<std::uint8_t>(~((repeated ? kUniqueFlag : 0) | (nulls ? kRequiredFlag : 0)));
  for (std::size_t i = 0; wasUnique && repeated && i < logicalIndexes_; ++i) {
    std::uint8_t* block = &bytes_[logical_ + i * x.logicalSize];
    if (load32(block + x.logicalReal) == realIndex &&
        block[x.logicalType] == static_cast<std::uint8_t>(LogicalIndex::Kind::primary)) {
      block[x.logicalType] = static_cast<std::uint8_t>(LogicalIndex::Kind::plain);
    }
  }
}

Bytes DefinitionEditor::withoutIndexes(const Format& format, const Bytes& bytes,
                                       const TableDefinition& table) {
  const auto& d = format.definition;
  const ByteView view(bytes, table.page);
  const std::size_t columns = d.headerSize + view.u32(d.realIndexCount) * d.realIndexEntry;
  std::size_t end = columns + view.u16(d.columnCount) * format.column.size;
  for (std::size_t i = 0; i < view.u16(d.columnCount); ++i) {
    end += d.nameLengthSize + view.u16(end);
  }
  const auto header = view.span(0, d.headerSize);
  const auto described = view.span(columns, end - columns);
  Bytes result(header.begin(), header.end());
  store32(&result[d.realIndexCount], 0);
  store32(&result[d.indexCount], 0);
  result.insert(result.end(), described.begin(), described.end());
  for (const Column& column : table.columns) {
    if (column.isLongValue()) {
      result.resize(result.size() + kLongValueMapsSize);
      store16(&result[result.size() - kLongValueMapsSize], column.number);
    }
  }
  result.insert(result.end(), {0xff, 0xff});
  return result;
}

void DefinitionEditor::changeLongValueMaps(
    const std::function<void(std::uint16_t, RowId&, RowId&)>& change) {
  for (std::size_t at = longValueMaps_; load16(&bytes_[at]) != kNoColumn;
       at += kLongValueMapsSize) {
    RowId pages = RowId::fromPointer(load32(&bytes_[at + 2]));
    RowId pagesWithRoom = RowId::fromPointer(load32(&bytes_[at + 6]));
    change(load16(&bytes_[at]), pages, pagesWithRoom);
    store32(&bytes_[at + 2], pages.toPointer());
    store32(&bytes_[at + 6], pagesWithRoom.toPointer());
  }
}

void DefinitionEditor::needLongValueMaps(std::uint16_t column) {
  std::size_t at = longValueMaps_;
  for (; load16(&bytes_[at]) != kNoColumn; at += kLongValueMapsSize) {
    if (load16(&bytes_[at]) == column) return;
  }
  bytes_.insert(bytes_.begin() + static_cast<std::ptrdiff_t>(at), kLongValueMapsSize, 0);
  store16(&bytes_[at], column);
}

void DefinitionEditor::changeRelations(const std::function<void(PageNumber&)>& change) {
  for (std::size_t i = 0; i < logicalIndexes_; ++i) {
    std::uint8_t* place =
        &bytes_[logical_ + i * format_.index.logicalSize + format_.index.logicalRelationTable];
    if (PageNumber table = load32(place); table != 0) {
      change(table);
      store32(place, table);
    }
  }
}

}  // namespace orv::store::jet
