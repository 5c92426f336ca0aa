#include "store/DamagedFile.h"

#include <stdexcept>

#include "store/jet/page/DataPage.h"
#include "store/jet/row/LongValue.h"

namespace orv::store::jet {

namespace fs = std::filesystem;

DamagedFile::DamagedFile(const fs::path& sound) : path_(folder_.copyOf(sound)) {
  database_ = Database::open(path_.string(), "");
  transaction_.emplace(database_->pager());
}

void DamagedFile::save() {
  transaction_->commit();
  transaction_.reset();
  database_.reset();
}

const RealIndex& DamagedFile::index(const std::string& table, const std::string& index) {
  const TableDefinition& definition = this->table(table);
  for (const LogicalIndex& logical : definition.logicalIndexes) {
    if (logical.name == index) return definition.realIndexes[logical.realIndex];
  }
  throw std::logic_error("there is no index " + index);
}

const std::vector<RowId>& DamagedFile::rows(const std::string& table) {
  std::vector<RowId>& rows = rows_[table];
  if (!rows.empty()) return rows;
  for (TableScan scan = database_->table(table)->scan(); scan.next();) rows.push_back(scan.rowId());
  return rows;
}

std::uint8_t* DamagedFile::rowEntry(RowId row) {
  return page(row.page) + format().data.rowTable + 2 * row.row;
}

std::uint8_t* DamagedFile::rowBytes(RowId row) {
  return DataPageEditor(format(), page(row.page), row.page).rowBytes(row.row).data();
}

std::span<std::uint8_t> DamagedFile::field(const std::string& table, RowId row,
                                           const std::string& column) {
  const TableDefinition& definition = this->table(table);
  std::ptrdiff_t offset = 0;
  std::size_t size = 0;
  {
    const RowView view = database_->table(table)->row(row).value();
    const auto bytes = view.bytes(definition.columns[definition.findColumn(column).value()]);
    offset = bytes.data() - pager().read(row.page).data();
    size = bytes.size();
  }
  return {page(row.page) + offset, size};
}

std::vector<RowId> DamagedFile::longValue(const std::string& table, const std::string& column) {
  const TableDefinition& definition = this->table(table);
  const Column& wanted = definition.columns[definition.findColumn(column).value()];
  for (TableScan scan = database_->table(table)->scan(); scan.next();) {
    std::vector<RowId> parts;
    if (!scan.row().isNull(wanted)) {
      forEachLongValuePart(pager(), scan.row().bytes(wanted), scan.rowId().page,
                           [&](RowId part) { parts.push_back(part); });
    }
    if (parts.size() > 1) return parts;
  }
  throw std::logic_error("no value of " + column + " is long");
}

DamagedFile::MovedRow DamagedFile::movedRow(const std::string& table, std::size_t number) {
  for (const RowId row : rows(table)) {
    const PageRef page = pager().read(row.page);
    const Slot slot = DataPage(format(), page.view()).slot(row.row);
    if (slot.kind == SlotKind::pointer && number-- == 0) {
      return {row, RowId::fromPointer(page.view().u32(slot.offset))};
    }
  }
  throw std::logic_error("no row of " + table + " has been moved");
}

std::uint8_t* DamagedFile::columnBlock(const std::string& table, std::size_t column) {
  return definition(table) + format().definition.headerSize +
         this->table(table).realIndexes.size() * format().definition.realIndexEntry +
         column * format().column.size;
}

std::vector<PageNumber> DamagedFile::leaves(const RealIndex& index) {
  std::vector<PageNumber> level{index.root};
  while (!indexPage(level.front()).isLeaf()) {
    std::vector<PageNumber> below;
    for (const PageNumber page : level) {
      const IndexPageEditor node = indexPage(page);
      for (std::size_t i = 0; i < node.childCount(); ++i) below.push_back(node.child(i));
    }
    level = below;
  }
  return level;
}

}  // namespace orv::store::jet
