// The entries of one index page.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "store/Value.h"
#include "store/jet/page/Format.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// More levels than any index can have: a way down that is longer runs in a circle.
inline constexpr std::size_t kMaxIndexDepth = 16;

/// Reads an index page. An entry is key bytes, the row pointer (three bytes of page and one of
/// row, big-endian) and, in a node, the page number of a child (four bytes, big-endian), of which
/// the entry is the last one below. Entries stand in the order of their bytes. A node's tail, if
/// it has one, is a last child without an entry.
///
/// The bytes that all entries begin with stand once, at the start of the first. A bit mask marks
/// where each entry ends. The constructor raises kCorruptFile for a page on which these do not
/// fit together, so that all positions can be relied on afterwards.
class IndexPage {
 public:
  static constexpr std::size_t kPointerSize = 4;
  static constexpr std::size_t kChildSize = 4;

  IndexPage(const Format& format, ByteView page);

  bool isLeaf() const { return leaf_; }
  PageNumber owner() const;     ///< page of the table's definition
  PageNumber previous() const;  ///< neighbour of the same level; 0 for none
  PageNumber next() const;
  PageNumber tail() const;     ///< of a node; 0 for none
  std::uint8_t level() const;  ///< 0 for leaves; not every program writes it

  std::size_t count() const { return count_; }
  /// Bytes that no entry takes.
  std::size_t freeSpace() const { return capacity() - used(); }
  /// Bytes of entry `i`, whole; `entry` keeps its capacity.
  void copyEntry(std::size_t i, Bytes& entry) const;
  Bytes entry(std::size_t i) const;
  /// Whether entry `i` is there and has these bytes.
  bool isEntry(std::size_t i, std::span<const std::uint8_t> entry) const;
  /// Whether entry `i` of a leaf has exactly this key.
  bool hasKey(std::size_t i, std::span<const std::uint8_t> key) const;
  /// Whether the key of entry `i` of a leaf is this one or begins with it.
  bool keyBeginsWith(std::size_t i, std::span<const std::uint8_t> key) const;
  /// Entry `i` of a node without its child: the last entry below that child.
  Bytes separator(std::size_t i) const;
  /// Child of entry `i` of a node; the tail for `count()`.
  PageNumber child(std::size_t i) const;
  std::size_t childCount() const { return count_ + (tail() != 0 ? 1 : 0); }

  /// The first entry that is not less than `key`; `count()` for none.
  std::size_t lowerBound(std::span<const std::uint8_t> key) const;
  /// The first entry that is greater than `key` and does not begin with it.
  std::size_t upperBound(std::span<const std::uint8_t> key) const;

 protected:
  std::span<const std::uint8_t> prefix() const { return {data_, prefixSize_}; }
  std::size_t begin(std::size_t i) const { return i == 0 ? prefixSize_ : ends_[i - 1]; }
  std::size_t used() const { return count_ == 0 ? 0 : ends_[count_ - 1]; }
  std::size_t capacity() const { return format_.pageSize - format_.indexPage.entries; }
  /// Bytes at the end of an entry that are no part of the key.
  std::size_t trailerSize() const { return kPointerSize + (leaf_ ? 0 : kChildSize); }

  /// Bytes at the end of an entry that no prefix takes in: all children differ, and no entry is
  /// without bytes of its own.
  std::size_t ownSize() const { return leaf_ ? 1 : kChildSize; }

  static constexpr std::size_t kMaxEntries = 453 * 8;  ///< bits of the longest mask

  const Format& format_;
  ByteView page_;
  const std::uint8_t* data_;  ///< where the entries begin
  bool leaf_;
  std::size_t prefixSize_;
  std::size_t count_ = 0;
  std::array<std::uint16_t, kMaxEntries> ends_;  ///< from `data_`

 private:
  bool beginsWith(std::size_t i, std::span<const std::uint8_t> bytes) const;
  std::size_t readMask();
  void checkSizes(std::size_t shortest) const;
  template <class IsBefore>
  std::size_t partition(std::span<const std::uint8_t> key, IsBefore isBefore) const;
};

/// An index page of a file, with the bytes that it is read from.
struct StoredIndexPage {
  /// Raises kCorruptFile unless `page` is an index page of the table defined at `owner`.
  StoredIndexPage(Pager& pager, PageNumber page, PageNumber owner);

  PageRef bytes;
  IndexPage entries;
};

}  // namespace orv::store::jet
