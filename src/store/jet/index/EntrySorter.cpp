#include "store/jet/index/EntrySorter.h"

#include <algorithm>
#include <cstring>

#include "store/jet/index/IndexPage.h"

namespace orv::store::jet {

void EntrySorter::append(std::size_t begin, RowId row, bool hasNull) {
  for (int shift = 16; shift >= 0; shift -= 8) {
    bytes_.push_back(static_cast<std::uint8_t>(row.page >> shift));
  }
  bytes_.push_back(row.row);
  Entry entry{0, begin, static_cast<std::uint32_t>(bytes_.size() - begin), hasNull};
  for (std::size_t i = 0; i < sizeof(entry.head); ++i) {
    entry.head = entry.head << 8 | (i < entry.size ? bytes_[begin + i] : 0);
  }
  inOrder_ = inOrder_ && (entries_.empty() || isBefore(entries_.back(), entry));
  entries_.push_back(entry);
}

bool EntrySorter::isBefore(const Entry& a, const Entry& b) const {
  if (a.head != b.head) {
    return a.head < b.head;
  }
  const int order = std::memcmp(&bytes_[a.begin], &bytes_[b.begin], std::min(a.size, b.size));
  return order != 0 ? order < 0 : a.size < b.size;
}

void EntrySorter::sort() {
  if (!inOrder_) {
    std::sort(entries_.begin(), entries_.end(),
              [this](const Entry& a, const Entry& b) { return isBefore(a, b); });
    inOrder_ = true;
  }
}

RowId EntrySorter::row(std::size_t i) const {
  const auto pointer = entry(i).last(IndexPage::kPointerSize);
  return {static_cast<PageNumber>(pointer[0] << 16 | pointer[1] << 8 | pointer[2]), pointer[3]};
}

/// Between entries of one key may stand others whose keys begin with it: see IndexTree::find.
bool EntrySorter::repeatsKey(std::size_t i) const {
  const std::size_t size = entries_[i].size;
  const auto key = entry(i).first(size - IndexPage::kPointerSize);
  while (i-- > 0) {
    const bool beginsWithKey =
        entries_[i].size >= size && std::ranges::equal(entry(i).first(key.size()), key);
    if (!beginsWithKey) return false;
    if (entries_[i].size == size) return true;
  }
  return false;
}

}  // namespace orv::store::jet
