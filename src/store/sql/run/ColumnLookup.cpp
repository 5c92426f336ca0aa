#include "store/sql/run/ColumnLookup.h"

#include <algorithm>
#include <functional>
#include <string_view>

#include "store/jet/index/IndexKey.h"
#include "store/sql/run/KeyBound.h"

namespace orv::store::sql {
namespace {

/// A hash of the value's index key: values that compare equal have the same.
std::uint32_t hashOf(const jet::Column& column, const Value& value, Bytes& key) {
  key.clear();
  // -0 and 0 are equal but have different keys.
  const bool isZero = hasTwoZeros(column.type) && value.toDouble() == 0;
  if (!isZero) jet::appendKey(key, column, value, true);
  const std::string_view bytes(reinterpret_cast<const char*>(key.data()), key.size());
  return static_cast<std::uint32_t>(std::hash<std::string_view>()(bytes));
}

}  // namespace

ColumnLookup::ColumnLookup(const jet::Table& table, std::size_t column)
    : column_(table.definition().columns[column]) {
  entries_.reserve(std::min(table.rowCount(), jet::kMostRowsExpected));
  Bytes key;
  const jet::Column& source = table.definition().columns[column];
  for (jet::TableScan scan = table.scan(); scan.next();) {
    const Value value = scan.row().value(source);
    if (!value.isNull()) {
      entries_.push_back({hashOf(column_, value, key), scan.rowId().toPointer()});
    }
  }
  std::sort(entries_.begin(), entries_.end());
}

std::span<const ColumnLookup::Entry> ColumnLookup::find(const Value& value) const {
  Bytes key;
  const std::uint32_t hash = hashOf(column_, value, key);
  const auto [begin, end] =
      std::equal_range(entries_.begin(), entries_.end(), Entry{hash, 0},
                       [](const Entry& a, const Entry& b) { return a.hash < b.hash; });
  return {begin, end};
}

std::shared_ptr<const ColumnLookup> ColumnLookups::get(const jet::Table& table,
                                                       std::size_t column) {
  if (version_ != table.pager().version()) {
    lookups_.clear();
    version_ = table.pager().version();
  }
  const auto [place, first] = lookups_.try_emplace({table.definition().page, column});
  if (!first && place->second == nullptr) {
    place->second = std::make_shared<const ColumnLookup>(table, column);
  }
  return place->second;
}

}  // namespace orv::store::sql
