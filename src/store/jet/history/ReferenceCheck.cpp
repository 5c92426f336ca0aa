#include "store/jet/history/ReferenceCheck.h"

#include <algorithm>
#include <optional>

#include "store/jet/index/IndexKey.h"
#include "store/jet/page/Text.h"

namespace orv::store::jet {
namespace {

const Column* columnNamed(const Table& table, const std::string& name) {
  const auto& columns = table.definition().columns;
  const auto found = std::ranges::find_if(
      columns, [&](const Column& column) { return sameName(column.name, name); });
  return found == columns.end() ? nullptr : &*found;
}

/// Keys are whole numbers.
bool holdsKeys(const Column& column) {
  return column.type == ColumnType::byte || column.type == ColumnType::integer ||
         column.type == ColumnType::longInteger;
}

/// The key that a row has in a column; none where it refers to nothing.
std::optional<std::int32_t> keyIn(const Table& table, std::span<const Value> row,
                                  const std::string& column) {
  const Column* found = columnNamed(table, column);
  if (!found) return std::nullopt;
  const auto place = static_cast<std::size_t>(found - table.definition().columns.data());
  const auto* key = place < row.size() ? row[place].getIf<std::int32_t>() : nullptr;
  return key && *key != 0 ? std::optional(*key) : std::nullopt;
}

}  // namespace

ReferenceCheck::ReferenceCheck(Database& database, std::span<const RowReference> references)
    : database_(database) {
  for (const RowReference& reference : references) watched_.push_back({reference, {}, {}});
}

void ReferenceCheck::note(const Table& table, std::span<const Value> row, bool came) {
  if (row.empty()) return;
  for (Watched& each : watched_) {
    const RowReference& reference = each.reference;
    const bool refers = came && sameName(reference.table, table.name());
    if (!refers && (came || !sameName(reference.target, table.name()))) continue;
    const auto key = keyIn(table, row, refers ? reference.column : reference.key);
    if (key) (refers ? each.came : each.gone).try_emplace(*key, row.begin(), row.end());
  }
}

std::vector<HistoryConflict> ReferenceCheck::violations() {
  std::vector<HistoryConflict> all;
  const auto add = [&](HistoryConflict::Kind kind, const std::string& name, const Row& row,
                       const std::string& other) {
    HistoryConflict& conflict = all.emplace_back(
        HistoryConflict{.table = name, .wanted = row, .kind = kind, .other = other});
    for (const Column& column : database_.table(name)->definition().columns) {
      conflict.columns.push_back(column.name);
    }
  };
  for (const Watched& each : watched_) {
    const RowReference& reference = each.reference;
    for (const auto& [key, row] : each.came) {
      if (has(reference.table, reference.column, key) &&
          !has(reference.target, reference.key, key)) {
        add(HistoryConflict::Kind::lacks, reference.table, row, reference.target);
      }
    }
    for (const auto& [key, row] : each.gone) {
      if (!each.came.contains(key) && has(reference.table, reference.column, key) &&
          !has(reference.target, reference.key, key)) {
        add(HistoryConflict::Kind::used, reference.target, row, reference.table);
      }
    }
  }
  return all;
}

/// Whether a row of the table has a key in a column.
bool ReferenceCheck::has(const std::string& name, const std::string& columnName, std::int32_t key) {
  if (!database_.find(name, CatalogEntry::Kind::table)) return false;
  const auto table = database_.table(name);
  const Column* column = columnNamed(*table, columnName);
  if (!column || !holdsKeys(*column)) return false;
  const auto number = static_cast<std::size_t>(column - table->definition().columns.data());
  for (const RealIndex& index : table->definition().realIndexes) {
    const bool serves = !index.columns.empty() && index.columns.front().column == number &&
                        !table->distrusted().contains(index.number);
    if (!serves) continue;
    const Bytes bytes = makeSearchKey(*column, key, index.columns.front().ascending).value();
    IndexCursor cursor = table->index(index.number).lowerBound(bytes);
    return cursor.next() &&
           std::ranges::equal(cursor.key().first(std::min(cursor.key().size(), bytes.size())),
                              bytes);
  }
  return keysOf(*table, *column).contains(key);
}

const std::set<std::int32_t>& ReferenceCheck::keysOf(const Table& table, const Column& column) {
  const auto [known, isNew] = keys_.try_emplace({table.name(), column.name});
  if (!isNew) return known->second;
  for (TableScan scan = table.scan(); scan.next();) {
    const Value value = scan.row().value(column);
    if (const auto* key = value.getIf<std::int32_t>()) known->second.insert(*key);
  }
  return known->second;
}

}  // namespace orv::store::jet
