#include "store/jet/index/IndexPageEditor.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

#include "errors/Error.h"
#include "store/StoreError.h"

namespace orv::store::jet {

IndexPageEditor::IndexPageEditor(const Format& format, std::uint8_t* bytes, PageNumber page)
    : IndexPage(format, ByteView({bytes, format.pageSize}, page)),
      bytes_(bytes),
      entries_(bytes + format.indexPage.entries) {}

void IndexPageEditor::initialize(const Format& format, std::uint8_t* bytes, PageNumber owner,
                                 std::uint8_t level) {
  const auto& layout = format.indexPage;
  std::memset(bytes, 0, format.pageSize);
  bytes[0] = static_cast<std::uint8_t>(level == 0 ? PageType::indexLeaf : PageType::indexNode);
  bytes[1] = 1;  // as in all of Access' pages
  store32(bytes + layout.owner, owner);
  bytes[layout.mask - 1] = level;
  store16(bytes + layout.freeSpace, static_cast<std::uint32_t>(format.pageSize - layout.entries));
}

void IndexPageEditor::setPrevious(PageNumber page) {
  store32(bytes_ + format_.indexPage.previous, page);
}
void IndexPageEditor::setNext(PageNumber page) {
  store32(bytes_ + format_.indexPage.next, page);
}
void IndexPageEditor::setTail(PageNumber page) {
  store32(bytes_ + format_.indexPage.tail, page);
}

bool IndexPageEditor::insert(std::size_t at, std::span<const std::uint8_t> entry) {
  const bool hasPrefix =
      entry.size() >= prefixSize_ + ownSize() && std::memcmp(entry.data(), data_, prefixSize_) == 0;
  if (hasPrefix && used() + entry.size() - begin(0) <= capacity()) {
    insertInPlace(at, entry.subspan(prefixSize_));
    return true;
  }
  Bytes whole;
  const std::vector<Entry> entries = viewsWith(at, entry, whole);
  if (!fits<Entry>(entries)) return false;
  write<Entry>(entries);
  return true;
}

void IndexPageEditor::insertInPlace(std::size_t at, std::span<const std::uint8_t> rest) {
  const std::size_t from = begin(at);
  std::memmove(entries_ + from + rest.size(), entries_ + from, used() - from);
  std::memcpy(entries_ + from, rest.data(), rest.size());
  for (std::size_t i = count_; i > at; --i) {
    ends_[i] = static_cast<std::uint16_t>(ends_[i - 1] + rest.size());
  }
  ends_[at] = static_cast<std::uint16_t>(from + rest.size());
  ++count_;
  writeMask(at);
}

void IndexPageEditor::erase(std::size_t from, std::size_t to) {
  if (from == to) return;
  const std::size_t first = begin(from);
  const std::size_t size = ends_[to - 1] - first;
  const std::size_t end = used();
  std::memmove(entries_ + first, entries_ + first + size, end - first - size);
  std::memset(entries_ + end - size, 0, size);
  for (std::size_t i = to; i < count_; ++i) {
    ends_[from + i - to] = static_cast<std::uint16_t>(ends_[i] - size);
  }
  count_ -= to - from;
  if (count_ == 0) setPrefixSize(0);
  writeMask(from);
}

void IndexPageEditor::assign(std::span<const Bytes> entries) {
  write(entries);
}

bool IndexPageEditor::fits(std::span<const Bytes> entries) const {
  return fits<Bytes>(entries);
}

std::vector<Bytes> IndexPageEditor::entriesWith(std::size_t at,
                                                std::span<const std::uint8_t> entry) const {
  Bytes whole;
  std::vector<Bytes> entries;
  entries.reserve(count_ + 1);
  for (const Entry view : viewsWith(at, entry, whole))
    entries.emplace_back(view.begin(), view.end());
  return entries;
}

/// All entries, with `entry` before entry `at`; those of the page stand whole in `whole`.
std::vector<IndexPageEditor::Entry> IndexPageEditor::viewsWith(std::size_t at, Entry entry,
                                                               Bytes& whole) const {
  whole.resize(used() + count_ * prefixSize_);
  std::vector<Entry> entries;
  entries.reserve(count_ + 1);
  std::uint8_t* next = whole.data();
  for (std::size_t i = 0; i < count_; ++i) {
    if (i == at) entries.push_back(entry);
    std::uint8_t* const start = next;
    next = std::copy(data_, data_ + prefixSize_, next);
    next = std::copy(data_ + begin(i), data_ + ends_[i], next);
    entries.emplace_back(start, next);
  }
  if (at == count_) entries.push_back(entry);
  refuseDisorder(entries);
  return entries;
}

void IndexPageEditor::refuseDisorder(std::span<const Entry> entries) const {
  const std::size_t childSize = leaf_ ? 0 : kChildSize;
  const auto isBefore = [&](Entry a, Entry b) {
    return std::ranges::lexicographical_compare(a.first(a.size() - childSize),
                                                b.first(b.size() - childSize));
  };
  if (!std::is_sorted(entries.begin(), entries.end(), isBefore)) {
    raiseDamaged(page_.page(), "its index entries are out of order");
  }
}

template <class Bytes>
void IndexPageEditor::write(std::span<const Bytes> entries) {
  setPrefixSize(commonPrefix(entries));
  std::memset(entries_, 0, capacity());
  count_ = 0;
  std::size_t end = 0;
  for (const Bytes& entry : entries) {
    const std::size_t skipped = count_ == 0 ? 0 : prefixSize_;
    std::memcpy(entries_ + end, entry.data() + skipped, entry.size() - skipped);
    end += entry.size() - skipped;
    ends_[count_++] = static_cast<std::uint16_t>(end);
  }
  writeMask(0);
}

/// Entries are in order, so what the first and the last have in common, all have. As in Access'
/// own pages it may reach into the row pointers: a page that was full so has to be parted so.
template <class Bytes>
std::size_t IndexPageEditor::commonPrefix(std::span<const Bytes> entries) const {
  if (entries.size() < 2) return 0;
  const Bytes& first = entries.front();
  const Bytes& last = entries.back();
  const std::size_t limit = std::min(first.size(), last.size()) - ownSize();
  const auto end = first.begin() + static_cast<std::ptrdiff_t>(limit);
  return static_cast<std::size_t>(std::mismatch(first.begin(), end, last.begin()).first -
                                  first.begin());
}

template <class Bytes>
bool IndexPageEditor::fits(std::span<const Bytes> entries) const {
  const std::size_t prefix = commonPrefix(entries);
  std::size_t size = prefix;
  for (const Bytes& entry : entries) size += entry.size() - prefix;
  return size <= capacity();
}

void IndexPageEditor::refuseTooLong(const Format& format, std::span<const std::uint8_t> entry) {
  if (entry.size() + kChildSize > maxEntrySize(format)) {
    throw Error(kNotSupported,
                fmt::format("The values of an index's columns are too long together: their key "
                            "takes {} bytes.",
                            entry.size() - kPointerSize));
  }
}

std::size_t IndexPageEditor::maxEntrySize(const Format& format) {
  return (format.pageSize - format.indexPage.entries) / 3;
}

void IndexPageEditor::setPrefixSize(std::size_t size) {
  prefixSize_ = size;
  store16(bytes_ + format_.indexPage.prefixLength, static_cast<std::uint32_t>(size));
}

void IndexPageEditor::writeMask(std::size_t from) {
  const auto& layout = format_.indexPage;
  std::uint8_t* mask = bytes_ + layout.mask;
  const std::size_t firstBit = from == 0 ? 0 : ends_[from - 1] + 1u;
  mask[firstBit / 8] &= static_cast<std::uint8_t>((1u << firstBit % 8) - 1);
  std::fill(mask + firstBit / 8 + 1, bytes_ + layout.entries, std::uint8_t{0});
  for (std::size_t i = from; i < count_; ++i) {
    mask[ends_[i] / 8] |= static_cast<std::uint8_t>(1u << ends_[i] % 8);
  }
  store16(bytes_ + layout.freeSpace, static_cast<std::uint32_t>(capacity() - used()));
}

}  // namespace orv::store::jet
