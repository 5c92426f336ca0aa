#include "store/jet/index/IndexPage.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace orv::store::jet {
namespace {

std::uint32_t loadBigEndian(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) << 24 | p[1] << 16 | p[2] << 8 | p[3];
}

/// Below, at or above zero as `a` is less than `b`, one of them begins with the other, or `a` is
/// greater.
int compareCommon(std::span<const std::uint8_t> a, std::span<const std::uint8_t> b) {
  const std::size_t size = std::min(a.size(), b.size());
  return size == 0 ? 0 : std::memcmp(a.data(), b.data(), size);
}

bool readIsLeaf(ByteView page) {
  switch (static_cast<PageType>(page.u8(0))) {
    case PageType::indexLeaf:
      return true;
    case PageType::indexNode:
      return false;
    default:
      raiseDamaged(page.page(), "it should be an index page");
  }
}

}  // namespace

IndexPage::IndexPage(const Format& format, ByteView page)
    : format_(format),
      page_(page),
      data_(page.span(format.indexPage.entries, capacity()).data()),
      leaf_(readIsLeaf(page)),
      prefixSize_(page.u8(format.indexPage.prefixLength)) {
  // The byte before the mask is the level; what is before that is the prefix's length, two bytes
  // long except in Jet 3.
  const auto& layout = format.indexPage;
  if (layout.prefixLength + 1 < layout.mask - 1) prefixSize_ = page.u16(layout.prefixLength);
  const std::size_t shortest = readMask();
  if (count_ == 0) prefixSize_ = 0;
  checkSizes(shortest);
}

/// Returns the size of the shortest entry, without prefix, but for the first one.
std::size_t IndexPage::readMask() {
  const auto& layout = format_.indexPage;
  const auto mask = page_.span(layout.mask, layout.entries - layout.mask);
  std::uint16_t* next = ends_.data();
  const auto addEnds = [&](std::uint64_t bits, std::size_t firstBit) {
    for (; bits != 0; bits &= bits - 1) {
      *next++ =
          static_cast<std::uint16_t>(firstBit + static_cast<std::size_t>(std::countr_zero(bits)));
    }
  };
  std::size_t i = 0;
  for (; i + 8 <= mask.size(); i += 8) addEnds(load64(mask.data() + i), i * 8);
  for (; i < mask.size(); ++i) addEnds(mask[i], i * 8);
  count_ = static_cast<std::size_t>(next - ends_.data());
  auto shortest = static_cast<std::uint16_t>(capacity());
  for (std::size_t end = 1; end < count_; ++end) {
    shortest = std::min(shortest, static_cast<std::uint16_t>(ends_[end] - ends_[end - 1]));
  }
  return shortest;
}

void IndexPage::checkSizes(std::size_t shortest) const {
  if (count_ == 0) return;
  const std::size_t fixed = ownSize();
  if (ends_[0] < prefixSize_ + fixed || ends_[0] < trailerSize() || shortest < fixed ||
      prefixSize_ + shortest < trailerSize() || used() > capacity()) {
    raiseDamaged(page_.page(), "its index entries do not fit its mask of entries");
  }
}

PageNumber IndexPage::owner() const {
  return page_.u32(format_.indexPage.owner);
}
PageNumber IndexPage::previous() const {
  return page_.u32(format_.indexPage.previous);
}
PageNumber IndexPage::next() const {
  return page_.u32(format_.indexPage.next);
}
PageNumber IndexPage::tail() const {
  return page_.u32(format_.indexPage.tail);
}
std::uint8_t IndexPage::level() const {
  return page_.u8(format_.indexPage.mask - 1);
}

void IndexPage::copyEntry(std::size_t i, Bytes& entry) const {
  entry.assign(data_, data_ + prefixSize_);
  entry.insert(entry.end(), data_ + begin(i), data_ + ends_[i]);
}

Bytes IndexPage::entry(std::size_t i) const {
  Bytes bytes;
  copyEntry(i, bytes);
  return bytes;
}

bool IndexPage::isEntry(std::size_t i, std::span<const std::uint8_t> entry) const {
  return i < count_ && entry.size() == prefixSize_ + ends_[i] - begin(i) && beginsWith(i, entry);
}

bool IndexPage::hasKey(std::size_t i, std::span<const std::uint8_t> key) const {
  return key.size() + kPointerSize == prefixSize_ + ends_[i] - begin(i) && beginsWith(i, key);
}

bool IndexPage::keyBeginsWith(std::size_t i, std::span<const std::uint8_t> key) const {
  return key.size() + kPointerSize <= prefixSize_ + ends_[i] - begin(i) && beginsWith(i, key);
}

/// Whether entry `i`, which is no shorter, begins with these bytes.
bool IndexPage::beginsWith(std::size_t i, std::span<const std::uint8_t> bytes) const {
  const std::size_t common = std::min(prefixSize_, bytes.size());
  return std::equal(data_, data_ + common, bytes.begin()) &&
         std::equal(bytes.begin() + static_cast<std::ptrdiff_t>(common), bytes.end(),
                    data_ + begin(i));
}

Bytes IndexPage::separator(std::size_t i) const {
  Bytes bytes = entry(i);
  bytes.erase(bytes.end() - kChildSize, bytes.end());
  return bytes;
}

PageNumber IndexPage::child(std::size_t i) const {
  return i == count_ ? tail() : loadBigEndian(data_ + ends_[i] - kChildSize);
}

template <class IsBefore>
std::size_t IndexPage::partition(std::span<const std::uint8_t> key, IsBefore isBefore) const {
  const int withPrefix = compareCommon(prefix(), key);
  if (withPrefix != 0) return withPrefix < 0 ? count_ : 0;
  const auto rest = key.subspan(std::min(prefixSize_, key.size()));
  const std::size_t childSize = leaf_ ? 0 : kChildSize;
  std::size_t low = 0;
  std::size_t high = count_;
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    const std::size_t size = ends_[middle] - begin(middle) - childSize;
    const int order = compareCommon({data_ + begin(middle), size}, rest);
    if (order < 0 || (order == 0 && isBefore(prefixSize_ + size))) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return low;
}

std::size_t IndexPage::lowerBound(std::span<const std::uint8_t> key) const {
  return partition(key, [&](std::size_t size) { return size < key.size(); });
}

std::size_t IndexPage::upperBound(std::span<const std::uint8_t> key) const {
  return partition(key, [](std::size_t) { return true; });
}

StoredIndexPage::StoredIndexPage(Pager& pager, PageNumber page, PageNumber owner)
    : bytes(pager.read(page)), entries(pager.format(), bytes.view()) {
  if (entries.owner() != owner) {
    raiseDamaged(page, "it should belong to the index of another table");
  }
}

}  // namespace orv::store::jet
