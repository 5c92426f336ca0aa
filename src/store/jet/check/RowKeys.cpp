#include "store/jet/check/RowKeys.h"

#include <algorithm>
#include <functional>
#include <string_view>

namespace orv::store::jet {

RowKeys::RowKeys(std::size_t indexes, std::size_t rows) : keys_(indexes) {
  rows_.reserve(rows);
  for (auto& keys : keys_) {
    keys.reserve(rows);
  }
}

void RowKeys::add(RowId row) {
  rows_.push_back(row.toPointer());
  for (auto& keys : keys_) {
    keys.push_back(kNone);
  }
}

void RowKeys::expect(std::size_t index, std::span<const std::uint8_t> key, bool hasNull) {
  keys_[index].back() = hash(key) | (hasNull ? kNullBit : 0);
}

void RowKeys::expectForm(std::size_t index, std::span<const std::uint8_t> key) {
  otherForms_[{index, rows_.back()}] = hash(key);
}

void RowKeys::expectAny(std::size_t index, bool hasNull) {
  keys_[index].back() = kAny | (hasNull ? kNullBit : 0);
}

std::uint32_t RowKeys::hash(std::span<const std::uint8_t> key) {
  const std::string_view bytes(reinterpret_cast<const char*>(key.data()), key.size());
  const auto bits = static_cast<std::uint32_t>(std::hash<std::string_view>{}(bytes)) & kHashBits;
  return std::max(bits, kAny + 4);
}

/// Position of a row; that of none is the number of rows.
std::size_t RowKeys::find(RowId row) const {
  const auto found = std::ranges::lower_bound(rows_, row.toPointer());
  return found != rows_.end() && *found == row.toPointer()
             ? static_cast<std::size_t>(found - rows_.begin())
             : rows_.size();
}

RowKeys::Match RowKeys::match(std::size_t index, RowId row, std::span<const std::uint8_t> key) {
  const std::size_t at = find(row);
  if (at == rows_.size()) {
    return unreadable_.contains(row.page) ? Match::right : Match::noRow;
  }
  std::uint32_t& expected = keys_[index][at];
  if (expected == kNone) {
    return Match::notMeant;
  }
  if ((expected & kFoundBit) != 0) {
    return Match::again;
  }
  expected |= kFoundBit;
  const std::uint32_t bits = expected & kHashBits;
  if (bits == kAny || bits == hash(key)) {
    return Match::right;
  }
  const auto other = otherForms_.find({index, rows_[at]});
  return other != otherForms_.end() && other->second == hash(key) ? Match::otherForm
                                                                  : Match::otherKey;
}

bool RowKeys::hasNull(std::size_t index, RowId row) const {
  const std::size_t at = find(row);
  return at < rows_.size() && (keys_[index][at] & kNullBit) != 0;
}

}  // namespace orv::store::jet
