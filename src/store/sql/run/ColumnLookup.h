// An index in memory of a column that has none in the file.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "store/jet/table/Table.h"

namespace orv::store::sql {

/// Finds rows by the value of one column. Holds a hash of the value and the place of each row,
/// eight bytes a row; what it finds may hold a few rows of other values.
class ColumnLookup {
 public:
  ColumnLookup(const jet::Table& table, std::size_t column);

  struct Entry {
    std::uint32_t hash;
    std::uint32_t pointer;
    auto operator<=>(const Entry&) const = default;
  };
  /// The rows that may have the value, in the order of the table.
  std::span<const Entry> find(const Value& value) const;

 private:
  const jet::Column column_;
  std::vector<Entry> entries_;
};

/// The lookups of a database's tables. One is made when a column is asked for the second time
/// while the file does not change, so that a single search does not pay for it.
class ColumnLookups {
 public:
  /// Null at the first time, when the caller had better go through the table.
  std::shared_ptr<const ColumnLookup> get(const jet::Table& table, std::size_t column);

 private:
  std::uint64_t version_ = 0;
  std::map<std::pair<jet::PageNumber, std::size_t>, std::shared_ptr<const ColumnLookup>> lookups_;
};

}  // namespace orv::store::sql
