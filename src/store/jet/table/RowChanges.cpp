#include "store/jet/table/RowChanges.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/page/DataPage.h"
#include "store/jet/row/FitValue.h"
#include "store/jet/row/LongValue.h"
#include "store/jet/row/RowEncoder.h"
#include "store/jet/table/AutoGuid.h"

namespace orv::store::jet {
namespace {

std::vector<Value> valuesOf(const TableDefinition& definition, const RowView& row) {
  std::vector<Value> values;
  values.reserve(definition.columns.size());
  for (const Column& column : definition.columns) values.push_back(row.value(column));
  return values;
}

/// Whether any index has the column.
bool isKeyed(const TableDefinition& definition, std::size_t column) {
  return std::ranges::any_of(definition.realIndexes, [&](const RealIndex& index) {
    return std::ranges::find(index.columns, column, &IndexColumn::column) != index.columns.end();
  });
}

bool valuesAreEqual(const RealIndex& index, std::span<const Value> a, std::span<const Value> b) {
  return std::ranges::all_of(
      index.columns, [&](const IndexColumn& key) { return a[key.column] == b[key.column]; });
}

}  // namespace

RowChanges::RowChanges(Table& table)
    : table_(table),
      definition_(table.definition()),
      pager_(table.pager()),
      observer_(pager_.observer().get()),
      space_(pager_, definition_.page, definition_.ownedPages, definition_.freePages) {
  indexes_.reserve(definition_.realIndexes.size());
  for (const RealIndex& index : definition_.realIndexes) {
    indexes_.push_back({index, {pager_, index, definition_.page}});
  }
  for (std::size_t i = 0; i < definition_.columns.size(); ++i) {
    const Column& column = definition_.columns[i];
    if (column.autoNumber) numbered_.push_back(i);
    if (column.isLongValue()) long_.push_back(&column);
    (isKeyed(definition_, i) ? keyed_ : unkeyed_).push_back(i);
  }
}

// Rows --------------------------------------------------------------------------------------

RowId RowChanges::insert(std::span<const Value> values) {
  const DamagedFileScope scope(pager_.path());
  const std::span<const Value> row = fit(values, true);
  const RowId id =
      space_.add(encodeRow(pager_, definition_, row), SlotKind::row, table_.insertHint_);
  table_.insertHint_ = id.page;
  for (Index& index : indexes_) addEntry(index, row, id);
  if (observer_) observer_->rowChanged(table_.name(), {}, row);
  ++newRows_;
  for (const std::size_t column : numbered_) {
    highestNumber_ = std::max(highestNumber_, row[column].toLong());
  }
  return id;
}

void RowChanges::update(RowId id, std::span<const Value> values) {
  const DamagedFileScope scope(pager_.path());
  const auto found = table_.find(id);
  if (!found) {
    throw Error(kNoCurrentRecord, "The row of table '" + table_.name() + "' has been deleted.");
  }
  const std::vector<Value> oldRow = valuesOf(definition_, found->row);
  const std::span<const Value> newRow = fit(values, false);
  if (std::ranges::equal(oldRow, newRow)) return;
  for (Index& index : indexes_) {
    if (valuesAreEqual(index.index, oldRow, newRow)) continue;
    eraseEntry(index, oldRow, id);
    addEntry(index, newRow, id);
  }
  writeContent(id, found->content, encodeRow(pager_, definition_, newRow, &found->row));
  if (observer_) observer_->rowChanged(table_.name(), oldRow, newRow);
}

void RowChanges::erase(RowId id) {
  const DamagedFileScope scope(pager_.path());
  auto found = table_.find(id);
  if (!found) {
    throw Error(kNoCurrentRecord,
                "The row of table '" + table_.name() + "' has been deleted already.");
  }
  const RowId content = found->content;
  readErased(found->row);
  for (Index& index : indexes_) eraseEntry(index, erased_, id);
  eraseLongValues(found->row, content.page);
  found.reset();  // the page may change in place from here on
  if (content != id) space_.erase(content);
  space_.erase(id);
  --newRows_;
}

void RowChanges::finish() {
  const DamagedFileScope scope(pager_.path());
  space_.finish();
  for (Index& index : indexes_) {
    index.run.finish();
    table_.changeKeyCount(index.index, index.newKeys);
  }
  table_.changeRowCount(newRows_);
  table_.raiseLastAutoNumber(highestNumber_);
}

/// The values as rows hold them, valid until the next call; a new row gets its automatic numbers.
std::span<const Value> RowChanges::fit(std::span<const Value> values, bool newRow) {
  if (values.size() != definition_.columns.size()) {
    throw Error(kInvalidCall,
                "A row of table '" + table_.name() + "' needs a value for each column.");
  }
  bool isChanged = false;
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::optional<Value> changed;
    if (newRow && values[i].isNull()) changed = makeValue(definition_.columns[i]);
    if (!changed) changed = changedToFit(table_.name(), definition_.columns[i], values[i]);
    if (!changed) continue;
    if (!std::exchange(isChanged, true)) fitted_.assign(values.begin(), values.end());
    fitted_[i] = *std::move(changed);
  }
  return isChanged ? std::span<const Value>(fitted_) : values;
}

/// What a new row gets in a column by itself; nothing in most columns.
std::optional<Value> RowChanges::makeValue(const Column& column) {
  if (column.autoNumber) return table_.reserveAutoNumber();
  if (column.autoGuid) return makeGuid();
  return {};
}

/// Reads what indexes need of a row that goes, and tells the observer of all of it. A row that is
/// damaged elsewhere goes all the same.
void RowChanges::readErased(const RowView& row) {
  const std::vector<Column>& columns = definition_.columns;
  erased_.resize(columns.size());
  for (const std::size_t i : keyed_) row.read(columns[i], erased_[i]);
  if (!observer_) return;
  try {
    for (const std::size_t i : unkeyed_) row.read(columns[i], erased_[i]);
    observer_->rowChanged(table_.name(), erased_, {});
  } catch (const Error& error) {
    if (error.number() != kCorruptFile) throw;
    observer_->rowNotRead();
  }
}

void RowChanges::writeContent(RowId home, RowId content, const Bytes& row) {
  const bool moved = content != home;
  if (space_.replace(content, row, moved ? SlotKind::hidden : SlotKind::row)) return;
  if (moved) space_.erase(content);
  const RowId place = space_.add(row, SlotKind::hidden);
  // The home keeps its length, at least that of a pointer.
  const PageRef page = pager_.read(home.page);
  const Slot slot = DataPage(pager_.format(), page.view()).slot(home.row);
  Bytes pointer(std::max<std::size_t>(slot.length, 4));
  store32(pointer.data(), place.toPointer());
  if (!space_.replace(home, pointer, SlotKind::pointer)) {
    raiseDamaged(home.page, "it has no room for the pointer to a row that has grown");
  }
}

void RowChanges::eraseLongValues(const RowView& row, PageNumber page) {
  for (const Column* column : long_) {
    if (!row.isNull(*column)) eraseLongValue(pager_, *column, row.bytes(*column), page);
  }
}

// Entries of indexes ------------------------------------------------------------------------

/// The key of a row that is to be saved.
Bytes RowChanges::keyOf(const RealIndex& index, std::span<const Value> values) const {
  try {
    return makeKey(definition_, index, values);
  } catch (const Error& error) {
    if (error.number() != kNotSupported) throw;
    throw Error(kNotSupported, "The row was not saved, since it would not be found by " +
                                   describe(index) + ". " + error.description());
  }
}

void RowChanges::addEntry(Index& added, std::span<const Value> row, RowId id) {
  const RealIndex& index = added.index;
  const bool hasNull = anyNull(index, row);
  if (index.required && hasNull) {
    throw Error(kDuplicateKey, "A key column of " + describe(index) + " has no value.");
  }
  if (!hasEntry(index, row)) return;
  const bool isOnly = index.unique && !hasNull;
  const auto sameKey = isOnly ? IndexRun::SameKey::refuse : IndexRun::SameKey::add;
  const auto change = added.run.insert(keyOf(index, row), id, sameKey);
  if (isOnly && (change == IndexTree::Change::none || hasOtherForm(index, row))) {
    throw Error(kDuplicateKey,
                "The row was not saved, since " + describe(index) +
                    " allows no two rows with the same values and there is one already.");
  }
  added.newKeys += change == IndexTree::Change::key ? 1 : 0;
}

void RowChanges::eraseEntry(Index& index, std::span<const Value> row, RowId id) {
  if (!hasEntry(index.index, row)) return;
  index.newKeys -= eraseAnyForm(index, row, id) == IndexTree::Change::key ? 1 : 0;
}

/// Another program's keys may have another form, and the keys of some sort orders are not known:
/// such an entry is found by its row. Where there is none at all, the index is right without it.
IndexTree::Change RowChanges::eraseAnyForm(Index& index, std::span<const Value> row, RowId id) {
  auto change = IndexTree::Change::none;
  const auto key = makeKnownKey(definition_, index.index, row);
  if (key) change = index.run.erase(*key, id);
  if (change == IndexTree::Change::none && key) {
    if (const auto otherForm = makeOtherForm(definition_, index.index, row)) {
      change = index.run.erase(*otherForm, id);
    }
  }
  if (change == IndexTree::Change::none) {
    index.run.finish();
    change = table_.index(index.index.number).eraseRow(id);
  }
  return change;
}

/// Whether a row of another program's has the values under a key of another form.
bool RowChanges::hasOtherForm(const RealIndex& index, std::span<const Value> row) const {
  const auto otherForm = makeOtherForm(definition_, index, row);
  return otherForm && table_.index(index.number).find(*otherForm);
}

std::string RowChanges::describe(const RealIndex& index) const {
  std::string name;
  for (const LogicalIndex& logical : definition_.logicalIndexes) {
    if (logical.realIndex == index.number) {
      name = logical.name;
      break;
    }
  }
  std::string columns;
  for (const IndexColumn& key : index.columns) {
    columns += (columns.empty() ? "" : ", ") + definition_.columns[key.column].name;
  }
  return "index '" + name + "' (" + columns + ") of table '" + definition_.name + "'";
}

}  // namespace orv::store::jet
