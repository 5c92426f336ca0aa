#include "store/jet/table/Table.h"

#include <algorithm>
#include <limits>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/page/UsageMap.h"
#include "store/jet/row/LongValue.h"
#include "store/jet/row/RowEncoder.h"
#include "store/jet/row/RowSpace.h"
#include "store/jet/table/AutoGuid.h"

namespace orv::store::jet {
namespace {

constexpr int kMostPointers = 16;       // from one place of a row to the next
constexpr std::size_t kReadAhead = 16;  // pages that a scan reads under one lock

/// Where the content of a row is: its own place, or where the pointer there leads.
std::optional<RowId> contentOf(Pager& pager, PageNumber owner, RowId id) {
  for (int hops = 0; hops < kMostPointers; ++hops) {
    const PageRef page = pager.read(id.page);
    const DataPage data(pager.format(), page.view());
    if (data.owner() != owner) {
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
      return id;
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

RowView viewAt(Pager& pager, const TableDefinition& definition, RowId content) {
  const PageRef page = pager.read(content.page);
  const Slot slot = DataPage(pager.format(), page.view()).slot(content.row);
  return {pager, definition, page, slot.offset, slot.length};
}

std::vector<Value> valuesOf(const TableDefinition& definition, const RowView& row) {
  std::vector<Value> values;
  values.reserve(definition.columns.size());
  for (const Column& column : definition.columns) {
    values.push_back(row.value(column));
  }
  return values;
}

bool anyNull(const RealIndex& index, std::span<const Value> values) {
  return std::any_of(index.columns.begin(), index.columns.end(),
                     [&](const IndexColumn& key) { return values[key.column].isNull(); });
}

/// Where the number of an index's different keys is on a definition's first page.
std::size_t keyCountOffset(const Format& format, std::size_t realIndex) {
  const auto& d = format.definition;
  return d.headerSize + realIndex * d.realIndexEntry + d.realIndexRowCount;
}

bool valuesAreEqual(const RealIndex& index, std::span<const Value> a, std::span<const Value> b) {
  return std::ranges::all_of(
      index.columns, [&](const IndexColumn& key) { return a[key.column] == b[key.column]; });
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
  nextRow_ = 0;
  if (nextPage() && page_.number() == row.page) {
    nextRow_ = static_cast<std::uint16_t>(row.row + 1);
  }
}

bool TableScan::next() {
  while (true) {
    while (nextRow_ >= rows_.rowCount()) {
      if (!nextPage()) {
        rows_ = {};
        nextRow_ = 0;
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
      if (const auto content = contentOf(*pager_, definition_->page, rowId_)) {
        row_ = viewAt(*pager_, *definition_, *content);
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
  const auto content = contentOf(*pager_, definition_->page, id);
  return content ? std::optional(viewAt(*pager_, *definition_, *content)) : std::nullopt;
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

/// The file's own count may be wrong: it is kept from passing its ends.
void Table::changeRowCount(int change) {
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

/// The key of a row that is to be saved.
Bytes Table::keyOf(const RealIndex& index, std::span<const Value> values) const {
  try {
    return makeKey(*definition_, index, values);
  } catch (const Error& error) {
    if (error.number() != kNotSupported) {
      throw;
    }
    throw Error(kNotSupported, "The row was not saved, since it would not be found by " +
                                   describeIndex(index) + ". " + error.description());
  }
}

void Table::refuseDuplicate(const RealIndex& index, std::span<const Value> values,
                            std::span<const std::uint8_t> key) const {
  if (index.required && anyNull(index, values)) {
    throw Error(kDuplicateKey, "A key column of " + describeIndex(index) + " has no value.");
  }
  if (!index.unique || anyNull(index, values)) {
    return;
  }
  const IndexTree tree = this->index(index.number);
  const std::optional<Bytes> otherForm = makeOtherForm(*definition_, index, values);
  if (tree.find(key) || (otherForm && tree.find(*otherForm))) {
    throw Error(kDuplicateKey,
                "The row was not saved, since " + describeIndex(index) +
                    " allows no two rows with the same values and there is one already.");
  }
}

std::string Table::describeIndex(const RealIndex& index) const {
  std::string name;
  for (const LogicalIndex& logical : definition_->logicalIndexes) {
    if (logical.realIndex == index.number) {
      name = logical.name;
      break;
    }
  }
  std::string columns;
  for (const IndexColumn& key : index.columns) {
    columns += (columns.empty() ? "" : ", ") + definition_->columns[key.column].name;
  }
  return "index '" + name + "' (" + columns + ") of table '" + definition_->name + "'";
}

std::int32_t Table::insertEntry(const RealIndex& index, std::span<const Value> values,
                                std::span<const std::uint8_t> key, RowId id) {
  if (!hasEntry(index, values)) {
    return 0;
  }
  return this->index(index.number).insert(key, id) == IndexTree::Change::key ? 1 : 0;
}

/// Another program's keys may have another form, and the keys of some sort orders are not known:
/// such an entry is found by its row. Where there is none at all, the index is right without it.
std::int32_t Table::eraseEntry(const RealIndex& index, std::span<const Value> values, RowId id) {
  if (!hasEntry(index, values)) {
    return 0;
  }
  IndexTree tree = this->index(index.number);
  auto change = IndexTree::Change::none;
  const auto key = makeKnownKey(*definition_, index, values);
  if (key) {
    change = tree.erase(*key, id);
  }
  if (change == IndexTree::Change::none && key) {
    if (const auto otherForm = makeOtherForm(*definition_, index, values)) {
      change = tree.erase(*otherForm, id);
    }
  }
  if (change == IndexTree::Change::none) {
    change = tree.eraseRow(id);
  }
  return change == IndexTree::Change::key ? -1 : 0;
}

std::vector<Value> Table::fit(std::span<const Value> values, bool newRow) {
  if (values.size() != definition_->columns.size()) {
    throw Error(kInvalidCall, "A row of table '" + name() + "' needs a value for each column.");
  }
  std::vector<Value> fitted;
  fitted.reserve(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Column& column = definition_->columns[i];
    const bool isMade = newRow && values[i].isNull();
    if (isMade && column.autoNumber) {
      fitted.emplace_back(reserveAutoNumber());
    } else if (isMade && column.autoGuid) {
      fitted.emplace_back(makeGuid());
    } else {
      fitted.push_back(fitValue(name(), column, values[i]));
    }
  }
  return fitted;
}

RowSpace Table::rowSpace() const {
  return {*pager_, definition_->page, definition_->ownedPages, definition_->freePages};
}

RowId Table::insert(std::span<const Value> values) {
  Transaction transaction(*pager_);
  const std::vector<Value> row = fit(values, true);
  std::vector<Bytes> keys;
  keys.reserve(definition_->realIndexes.size());
  for (const RealIndex& index : definition_->realIndexes) {
    Bytes& key = keys.emplace_back();
    if (hasEntry(index, row)) {
      key = keyOf(index, row);
    }
    refuseDuplicate(index, row, key);
  }
  const RowId id =
      rowSpace().add(encodeRow(*pager_, *definition_, row), SlotKind::row, insertHint_);
  insertHint_ = id.page;
  for (const RealIndex& index : definition_->realIndexes) {
    changeKeyCount(index, insertEntry(index, row, keys[index.number], id));
  }
  const auto& offsets = pager_->format().definition;
  changeRowCount(1);
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (definition_->columns[i].autoNumber && row[i].toLong() > lastAutoNumber()) {
      store32(pager_->modify(definition_->page) + offsets.autoNumber,
              static_cast<std::uint32_t>(row[i].toLong()));
    }
  }
  transaction.commit();
  return id;
}

void Table::update(RowId id, std::span<const Value> values) {
  Transaction transaction(*pager_);
  const auto content = contentOf(*pager_, definition_->page, id);
  if (!content) {
    throw Error(kNoCurrentRecord, "The row of table '" + name() + "' has been deleted.");
  }
  const RowView before = viewAt(*pager_, *definition_, *content);
  const std::vector<Value> oldRow = valuesOf(*definition_, before);
  const std::vector<Value> newRow = fit(values, false);
  if (oldRow == newRow) {
    return transaction.commit();
  }
  std::vector<std::pair<const RealIndex*, Bytes>> changed;
  for (const RealIndex& index : definition_->realIndexes) {
    const std::optional<Bytes> oldKey = makeKnownKey(*definition_, index, oldRow);
    const bool isSame = valuesAreEqual(index, oldRow, newRow);
    if (isSame && !oldKey) {
      continue;
    }
    Bytes key = keyOf(index, newRow);
    if (oldKey != key) {
      refuseDuplicate(index, newRow, key);
    } else if (isSame) {
      continue;
    }
    changed.emplace_back(&index, std::move(key));
  }
  writeContent(id, *content, encodeRow(*pager_, *definition_, newRow, &before));
  for (const auto& [index, key] : changed) {
    const std::int32_t erased = eraseEntry(*index, oldRow, id);
    changeKeyCount(*index, erased + insertEntry(*index, newRow, key, id));
  }
  transaction.commit();
}

void Table::writeContent(RowId home, RowId content, const Bytes& row) {
  RowSpace space = rowSpace();
  const bool moved = content != home;
  if (space.replace(content, row, moved ? SlotKind::hidden : SlotKind::row)) {
    return;
  }
  if (moved) {
    space.erase(content);
  }
  const RowId place = space.add(row, SlotKind::hidden);
  // The home keeps its length, at least that of a pointer.
  const PageRef page = pager_->read(home.page);
  const Slot slot = DataPage(pager_->format(), page.view()).slot(home.row);
  Bytes pointer(std::max<std::size_t>(slot.length, 4));
  store32(pointer.data(), place.toPointer());
  if (!space.replace(home, pointer, SlotKind::pointer)) {
    raiseDamaged(home.page, "it has no room for the pointer to a row that has grown");
  }
}

void Table::erase(RowId id) {
  Transaction transaction(*pager_);
  const auto content = contentOf(*pager_, definition_->page, id);
  if (!content) {
    throw Error(kNoCurrentRecord, "The row of table '" + name() + "' has been deleted already.");
  }
  {
    const RowView row = viewAt(*pager_, *definition_, *content);
    const std::vector<Value> values = valuesOf(*definition_, row);
    for (const RealIndex& index : definition_->realIndexes) {
      changeKeyCount(index, eraseEntry(index, values, id));
    }
    for (const Column& column : definition_->columns) {
      if (column.isLongValue() && !row.isNull(column)) {
        eraseLongValue(*pager_, column, row.bytes(column), content->page);
      }
    }
  }
  RowSpace space = rowSpace();
  if (*content != id) {
    space.erase(*content);
  }
  space.erase(id);
  changeRowCount(-1);
  transaction.commit();
}

}  // namespace orv::store::jet
