#include "store/jet/table/Table.h"

#include <algorithm>
#include <limits>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/UsageMap.h"
#include "store/jet/table/RowChanges.h"

namespace orv::store::jet {
namespace {

constexpr int kMostPointers = 16;       // from one place of a row to the next
constexpr std::size_t kReadAhead = 16;  // pages that a scan reads under one lock

/// The row at `id`: its content is there, or where the pointer there leads.
std::optional<StoredRow> find(Pager& pager, const TableDefinition& definition, RowId id) {
  for (int hops = 0; hops < kMostPointers; ++hops) {
    const PageRef page = pager.read(id.page);
    const DataPage data(pager.format(), page.view());
    if (data.owner() != definition.page) {
      raiseDamaged(id.page, "a row pointer of one table leads to another's page");
    }
    if (id.row >= data.rowCount()) {
      return std::nullopt;
    }
    const Slot slot = data.slot(id.row);
    if (slot.kind == SlotKind::pointer) {
      id = RowId::fromPointer(page.view().u32(slot.offset));
    } else if (slot.kind == SlotKind::dead || (slot.kind == SlotKind::hidden && hops == 0)) {
      return std::nullopt;
    } else {
      return StoredRow{id, {pager, definition, page, slot.offset, slot.length}};
    }
  }
  raiseDamaged(id.page, "the pointers of a row form a loop");
}

/// A page that is listed as one of the table's, as rows.
DataPage rowsOf(const Pager& pager, const TableDefinition& definition, const PageRef& page) {
  const DataPage rows(pager.format(), page.view());
  if (rows.owner() != definition.page) {
    raiseDamaged(page.number(), "it is listed as a page of table '" + definition.name +
                                    "', but says that it is another's");
  }
  return rows;
}

/// Where the number of an index's different keys is on a definition's first page.
std::size_t keyCountOffset(const Format& format, std::size_t realIndex) {
  const auto& d = format.definition;
  return d.headerSize + realIndex * d.realIndexEntry + d.realIndexRowCount;
}

}  // namespace

TableScan::TableScan(Pager& pager, std::shared_ptr<const TableDefinition> definition)
    : pager_(&pager), definition_(std::move(definition)) {}

void TableScan::readAhead() {
  Pager::ReadLock lock(*pager_);
  ahead_.clear();
  aheadUsed_ = 0;
  aheadVersion_ = pager_->version();
  const UsageMap owned(*pager_, definition_->ownedPages);
  const std::size_t most = pager_->inTransaction() ? 1 : kReadAhead;
  for (PageNumber from = nextPage_; ahead_.size() < most;) {
    try {
      // A page that the file does not have is asked for too: a file that is cut short must not
      // pass for one with fewer rows.
      const auto found = owned.next(from, kEndOfPages);
      if (!found) {
        return;
      }
      ahead_.push_back(pager_->read(*found));
      from = *found + 1;
    } catch (const Error&) {
      if (ahead_.empty()) {
        throw;
      }
      return;  // What can be read is visited before the damage is told.
    }
  }
}

bool TableScan::nextPage() {
  const bool current = aheadVersion_ == pager_->version() && !pager_->inTransaction();
  if (aheadUsed_ == ahead_.size() || !current) {
    readAhead();
  }
  if (ahead_.empty()) {
    rows_ = {};
    return false;
  }
  DamagedFileScope scope(pager_->path());
  page_ = std::move(ahead_[aheadUsed_++]);
  nextPage_ = page_.number() + 1;
  rows_ = rowsOf(*pager_, *definition_, page_);
  nextRow_ = 0;
  return true;
}

void TableScan::seekAfter(RowId row) {
  nextPage_ = row.page;
  ahead_.clear();
  aheadUsed_ = 0;
  rows_ = {};
  if (nextPage() && page_.number() == row.page) {
    nextRow_ = static_cast<std::uint16_t>(row.row + 1);
  }
}

bool TableScan::next() {
  while (true) {
    while (nextRow_ >= rows_.rowCount()) {
      if (!nextPage()) {
        return false;
      }
    }
    const auto number = static_cast<std::uint8_t>(nextRow_++);
    const Slot slot = rows_.slot(number);
    rowId_ = {page_.number(), number};
    if (slot.kind == SlotKind::row) {
      row_.show(*pager_, *definition_, page_, slot.offset, slot.length);
      return true;
    }
    if (slot.kind == SlotKind::pointer) {
      Pager::ReadLock lock(*pager_);
      if (auto found = find(*pager_, *definition_, rowId_)) {
        row_ = std::move(found->row);
        return true;
      }
    }
  }
}

Table::Table(std::shared_ptr<Pager> pager, std::shared_ptr<const TableDefinition> definition)
    : pager_(std::move(pager)), definition_(std::move(definition)) {}

void Table::changeDefinition(std::shared_ptr<const TableDefinition> definition) {
  formerDefinitions_.push_back(std::move(definition_));
  definition_ = std::move(definition);
}

std::uint32_t Table::rowCount() const {
  Pager::ReadLock lock(*pager_);
  return pager_->read(definition_->page).view().u32(pager_->format().definition.rowCount);
}

std::size_t Table::countRows() const {
  Pager::ReadLock lock(*pager_);
  const UsageMap owned(*pager_, definition_->ownedPages);
  std::size_t rows = 0;
  for (auto page = owned.next(0, kEndOfPages); page; page = owned.next(*page + 1, kEndOfPages)) {
    const PageRef ref = pager_->read(*page);
    const DataPage data = rowsOf(*pager_, *definition_, ref);
    for (std::uint16_t i = 0; i < data.rowCount(); ++i) {
      const SlotKind kind = data.slot(i).kind;
      rows += kind == SlotKind::row || kind == SlotKind::pointer ? 1 : 0;
    }
  }
  return rows;
}

std::uint32_t Table::keyCount(std::size_t realIndex) const {
  Pager::ReadLock lock(*pager_);
  return pager_->read(definition_->page).view().u32(keyCountOffset(pager_->format(), realIndex));
}

std::optional<RowView> Table::row(RowId id) const {
  Pager::ReadLock lock(*pager_);
  auto found = find(id);
  return found ? std::optional(std::move(found->row)) : std::nullopt;
}

std::optional<StoredRow> Table::find(RowId id) const {
  return jet::find(*pager_, *definition_, id);
}

IndexTree Table::index(std::size_t realIndex) const {
  return {*pager_, definition_->realIndexes.at(realIndex), definition_->page};
}

std::int32_t Table::lastAutoNumber() const {
  return static_cast<std::int32_t>(
      pager_->read(definition_->page).view().u32(pager_->format().definition.autoNumber));
}

std::int32_t Table::reserveAutoNumber() {
  const std::int32_t last = std::max(reserved_, lastAutoNumber());
  if (last == std::numeric_limits<std::int32_t>::max()) {
    throw Error(kOverflow, "Table '" + name() + "' has used up its automatic numbers.");
  }
  return reserved_ = last + 1;
}

void Table::raiseLastAutoNumber(std::int32_t number) {
  if (number > lastAutoNumber()) {
    store32(pager_->modify(definition_->page) + pager_->format().definition.autoNumber,
            static_cast<std::uint32_t>(number));
  }
}

/// The file's own count may be wrong: it is kept from passing its ends.
void Table::changeRowCount(int change) {
  if (change == 0) return;
  std::uint8_t* count = pager_->modify(definition_->page) + pager_->format().definition.rowCount;
  const std::int64_t rows = std::int64_t{load32(count)} + change;
  store32(count, static_cast<std::uint32_t>(
                     std::clamp<std::int64_t>(rows, 0, std::numeric_limits<std::uint32_t>::max())));
}

/// A number that another program has left too low stays: it is but a hint.
void Table::changeKeyCount(const RealIndex& index, std::int32_t change) {
  const std::size_t at = keyCountOffset(pager_->format(), index.number);
  if (change == 0 || at + sizeof(std::uint32_t) > pager_->format().pageSize) {
    return;
  }
  std::uint8_t* count = pager_->modify(definition_->page) + at;
  const std::uint32_t keys = load32(count);
  if (change > 0 || keys > 0) {
    store32(count, keys + static_cast<std::uint32_t>(change));
  }
}

RowId Table::insert(std::span<const Value> values) {
  Transaction transaction(*pager_);
  RowChanges changes(*this);
  const RowId id = changes.insert(values);
  changes.finish();
  transaction.commit();
  return id;
}

void Table::update(RowId id, std::span<const Value> values) {
  Transaction transaction(*pager_);
  RowChanges changes(*this);
  changes.update(id, values);
  changes.finish();
  transaction.commit();
}

void Table::erase(RowId id) {
  Transaction transaction(*pager_);
  RowChanges changes(*this);
  changes.erase(id);
  changes.finish();
  transaction.commit();
}

}  // namespace orv::store::jet
