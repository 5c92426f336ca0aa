// The entries of an index, brought into order.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// Takes about 24 bytes and the key for each entry.
class EntrySorter {
 public:
  /// Adds an entry: what the key bytes are, `write` appends to those that it is given.
  template <class Write>
  void add(RowId row, bool hasNull, Write write) {
    const std::size_t begin = bytes_.size();
    write(bytes_);
    append(begin, row, hasNull);
  }

  void sort();
  std::size_t size() const { return entries_.size(); }
  /// Key bytes and row pointer of the entry that is `i`th in order.
  std::span<const std::uint8_t> entry(std::size_t i) const {
    return std::span(bytes_).subspan(entries_[i].begin, entries_[i].size);
  }
  RowId row(std::size_t i) const;
  /// Whether an entry has the key of the one before it.
  bool repeatsKey(std::size_t i) const;
  /// Whether one of the values of the entry is Null.
  bool hasNull(std::size_t i) const { return entries_[i].hasNull; }

 private:
  struct Entry {
    std::uint64_t head;  ///< the first eight bytes, as a number
    std::size_t begin;
    std::uint32_t size;
    bool hasNull;
  };

  void append(std::size_t begin, RowId row, bool hasNull);
  bool isBefore(const Entry& a, const Entry& b) const;

  Bytes bytes_{};
  std::vector<Entry> entries_{};
  bool inOrder_ = true;
};

}  // namespace orv::store::jet
