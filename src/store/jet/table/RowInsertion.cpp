#include "store/jet/table/RowInsertion.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/index/IndexKey.h"
#include "store/jet/row/RowEncoder.h"

namespace orv::store::jet {

RowInsertion::RowInsertion(Table& table) : table_(table), space_(table.rowSpace()) {
  const TableDefinition& definition = table.definition();
  indexes_.reserve(definition.realIndexes.size());
  for (const RealIndex& index : definition.realIndexes) {
    indexes_.push_back({index, {table.pager(), index, definition.page}});
  }
}

RowId RowInsertion::add(std::span<const Value> values) {
  const TableDefinition& definition = table_.definition();
  const std::vector<Value> row = table_.fit(values, true);
  const RowId id =
      space_.add(encodeRow(table_.pager(), definition, row), SlotKind::row, table_.insertHint_);
  table_.insertHint_ = id.page;
  for (Index& index : indexes_) addEntry(index, row, id);
  ++added_;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (definition.columns[i].autoNumber) {
      highestNumber_ = std::max(highestNumber_, row[i].toLong());
    }
  }
  return id;
}

void RowInsertion::addEntry(Index& added, std::span<const Value> row, RowId id) {
  const RealIndex& index = added.index;
  const bool hasNull = anyNull(index, row);
  if (index.required && hasNull) {
    throw Error(kDuplicateKey, "A key column of " + table_.describeIndex(index) + " has no value.");
  }
  if (!hasEntry(index, row)) return;
  const bool isOnly = index.unique && !hasNull;
  const auto sameKey = isOnly ? IndexRun::SameKey::refuse : IndexRun::SameKey::add;
  const auto change = added.run.insert(table_.keyOf(index, row), id, sameKey);
  if (change == IndexTree::Change::none || (isOnly && hasOtherForm(index, row))) {
    table_.raiseDuplicate(index);
  }
  added.addedKeys += change == IndexTree::Change::key ? 1 : 0;
}

/// Whether a row of another program's has the values under a key of another form.
bool RowInsertion::hasOtherForm(const RealIndex& index, std::span<const Value> row) const {
  const auto otherForm = makeOtherForm(table_.definition(), index, row);
  return otherForm && table_.index(index.number).find(*otherForm);
}

void RowInsertion::finish() {
  for (const Index& index : indexes_) table_.changeKeyCount(index.index, index.addedKeys);
  table_.changeRowCount(added_);
  table_.raiseLastAutoNumber(highestNumber_);
}

}  // namespace orv::store::jet
