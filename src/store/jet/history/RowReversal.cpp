#include "store/jet/history/RowReversal.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/index/IndexKey.h"

namespace orv::store::jet {

// Rows of one table -------------------------------------------------------------------------

RowChanges& ReversedTable::changes() {
  if (!changes_) changes_.emplace(*table_);
  return *changes_;
}

void ReversedTable::finish() {
  if (changes_) changes_->finish();
  changes_.reset();
}

/// The index by which the row is found: a unique one if there is any.
const RealIndex* ReversedTable::indexFor(std::span<const Value> row) const {
  const RealIndex* best = nullptr;
  for (const RealIndex& index : table_->definition().realIndexes) {
    if (table_->distrusted().contains(index.number) || anyNull(index, row)) continue;
    if (!makeKnownKey(table_->definition(), index, row)) continue;
    if (!best || (index.unique && !best->unique)) best = &index;
  }
  return best;
}

std::vector<Value> ReversedTable::valuesAt(RowId id) const {
  const auto view = table_->row(id);
  if (!view) return {};
  std::vector<Value> values;
  for (const Column& column : table_->definition().columns) values.push_back(view->value(column));
  return values;
}

/// Whether a unique index refuses a second row like this one.
bool ReversedTable::isUnique(std::span<const Value> row) const {
  const RealIndex* index = indexFor(row);
  return index && index->unique;
}

void ReversedTable::readCandidates(const RealIndex& index, const Bytes& key) {
  if (index_ == &index && key_ == key) return;
  finish();  // so that the index is whole
  candidates_.clear();
  index_ = &index;
  key_ = key;
  for (IndexCursor cursor = table_->index(index.number).lowerBound(key); cursor.next();) {
    if (!std::ranges::equal(cursor.key(), key)) break;
    addCandidate(cursor.rowId());
  }
}

void ReversedTable::readAll() {
  if (hasAll_) return;
  finish();
  index_ = nullptr;
  candidates_.clear();
  for (TableScan scan = table_->scan(); scan.next();) {
    addCandidate(scan.rowId());
  }
  hasAll_ = true;
}

/// Has the rows at hand that may be this one; the index that led to them, if one did.
const RealIndex* ReversedTable::lookFor(std::span<const Value> row) {
  const RealIndex* index = hasAll_ ? nullptr : indexFor(row);
  if (index) {
    readCandidates(*index, makeKey(table_->definition(), *index, row));
  } else {
    readAll();
  }
  return index;
}

std::optional<RowId> ReversedTable::find(std::span<const Value> row, std::vector<Value>& present) {
  const RealIndex* index = lookFor(row);
  const auto found = candidates_.find(contentOf(row));
  if (found != candidates_.end()) return found->second;
  if (index && index->unique && !candidates_.empty()) {
    finish();
    present = valuesAt(candidates_.begin()->second);
  }
  return std::nullopt;
}

bool ReversedTable::hasOther(std::span<const Value> row, Likeness likeness) {
  if (isUnique(row)) return false;
  const RealIndex* index = lookFor(row);
  const auto isOther = [&](const auto& candidate) { return !own_.contains(candidate.second); };
  if (index && likeness == Likeness::key) return std::ranges::any_of(candidates_, isOther);
  const auto [first, last] = candidates_.equal_range(contentOf(row));
  return std::any_of(first, last, isOther);
}

std::string ReversedTable::contentOf(std::span<const Value> row) {
  const Bytes bytes = encodeRowValues(row);
  return {bytes.begin(), bytes.end()};
}

void ReversedTable::removeCandidate(RowId id, std::span<const Value> row) {
  const auto [first, last] = candidates_.equal_range(contentOf(row));
  for (auto each = first; each != last; ++each) {
    if (each->second != id) continue;
    candidates_.erase(each);
    return;
  }
}

void ReversedTable::insert(std::span<const Value> row) {
  const RowId id = changes().insert(row);
  own_.insert(id);
  const bool isCandidate =
      hasAll_ || (index_ && makeKnownKey(table_->definition(), *index_, row) == key_);
  if (isCandidate) candidates_.emplace(contentOf(row), id);
}

void ReversedTable::update(RowId id, std::span<const Value> from, std::span<const Value> to) {
  changes().update(id, to);
  index_ = nullptr;
  if (!hasAll_) return;
  removeCandidate(id, from);
  candidates_.emplace(contentOf(to), id);
}

void ReversedTable::erase(RowId id, std::span<const Value> row) {
  changes().erase(id);
  own_.erase(id);
  removeCandidate(id, row);
}

void ReversedTable::abandon() {
  changes_.reset();
  index_ = nullptr;
  hasAll_ = false;
}

// Changes -----------------------------------------------------------------------------------

void RowReversal::takeBack(const std::vector<RowChange>& changes) {
  for (std::size_t end = changes.size(); end > 0;) {
    // Rows that were deleted together come back in their order: some tables have no other.
    std::size_t begin = end - 1;
    const auto isDeletion = [](const RowChange& change) { return change.after.empty(); };
    while (begin > 0 && isDeletion(changes[begin]) && isDeletion(changes[begin - 1])) --begin;
    for (std::size_t i = begin; i < end; ++i) apply(changes[i], true);
    end = begin;
  }
}

void RowReversal::makeAgain(const std::vector<RowChange>& changes) {
  for (const RowChange& change : changes) apply(change, false);
}

void RowReversal::finish() {
  if (isBroken_) return;
  for (auto& [name, table] : tables_) table.finish();
  if (conflicts_.empty()) conflicts_ = references_.violations();
}

void RowReversal::apply(const RowChange& change, bool back) {
  if (isBroken_) return;
  if (ReversedTable* changed = table(change)) {
    apply(change.table, *changed, back ? change.after : change.before,
          back ? change.before : change.after);
  }
}

/// The table of a change; null, and a conflict, where it is gone or has other columns now.
ReversedTable* RowReversal::table(const RowChange& change) {
  auto known = tables_.find(change.table);
  if (known == tables_.end()) {
    if (!database_.find(change.table, CatalogEntry::Kind::table)) {
      conflicts_.push_back({.table = change.table});
      isBroken_ = true;
      return nullptr;
    }
    known = tables_.emplace(change.table, database_.table(change.table)).first;
  }
  const std::size_t columns = std::max(change.before.size(), change.after.size());
  if (known->second.table().definition().columns.size() == columns) return &known->second;
  conflicts_.push_back({.table = change.table});
  isBroken_ = true;
  return nullptr;
}

void RowReversal::apply(const std::string& name, ReversedTable& table, std::span<const Value> from,
                        std::span<const Value> to) {
  std::vector<Value> present;
  const auto conflict = [&](std::span<const Value> wanted) {
    HistoryConflict found{
        .table = name, .wanted = {wanted.begin(), wanted.end()}, .present = present};
    if (found.wanted == found.present) found.kind = HistoryConflict::Kind::isThere;
    for (const Column& column : table.table().definition().columns) {
      found.columns.push_back(column.name);
    }
    conflicts_.push_back(std::move(found));
  };
  try {
    if (from.empty()) {
      if (table.hasOther(to, likeness_)) {
        present.assign(to.begin(), to.end());
        return conflict(to);
      }
      table.insert(to);
    } else {
      const auto row = table.find(from, present);
      if (!row) return conflict(from);
      to.empty() ? table.erase(*row, from) : table.update(*row, from, to);
    }
    references_.rowWent(table.table(), from);
    references_.rowCame(table.table(), to);
  } catch (const Error& error) {
    if (error.number() != kDuplicateKey) throw;
    isBroken_ = true;
    table.abandon();
    if (table.find(to, present)) present.assign(to.begin(), to.end());
    conflict(to);
  }
}

}  // namespace orv::store::jet
