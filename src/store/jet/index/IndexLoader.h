// The tree of an index, made in one go.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/index/EntrySorter.h"
#include "store/jet/page/Pager.h"

namespace orv::store::jet {

/// Makes full pages from entries that come in order, each page once: the leaves from the first to
/// the last, and above them as many levels of nodes as there must be.
class IndexLoader {
 public:
  /// `table` is the page of the definition of the table that owns the pages; `newPage` gives a page
  /// of the file whenever one is needed. Needs a transaction of the pager.
  IndexLoader(Pager& pager, PageNumber table, std::function<PageNumber()> newPage)
      : pager_(pager), table_(table), newPage_(std::move(newPage)) {}

  /// Adds an entry (key bytes and row pointer), greater than all before it. Raises kNotSupported
  /// when it is too long for a page.
  void add(std::span<const std::uint8_t> entry);
  /// Sorts the entries and adds all of them. Tells `repeated` of each, by its place in their order,
  /// that has the key of the one before it and no Null. Gives the number of different keys.
  std::uint32_t addAll(EntrySorter& entries, const std::function<void(std::size_t)>& repeated);
  /// Writes what is left. Gives the root.
  PageNumber finish();

 private:
  /// The page of one level that is being filled.
  struct Level {
    PageNumber page;
    PageNumber previous = 0;
    PageNumber tail = 0;
    std::size_t prefix = 0;             ///< bytes that all entries begin with
    Bytes bytes{};                      ///< of the entries, whole
    std::vector<std::uint32_t> ends{};  ///< of each, in `bytes`

    std::span<const std::uint8_t> entry(std::size_t i) const {
      const std::size_t begin = i == 0 ? 0 : ends[i - 1];
      return std::span(bytes).subspan(begin, ends[i] - begin);
    }
  };

  void addTo(std::size_t level, std::span<const std::uint8_t> entry);
  std::size_t prefixWith(std::size_t level, std::span<const std::uint8_t> entry) const;
  bool takes(std::size_t level, std::span<const std::uint8_t> entry, std::size_t prefix) const;
  void closePage(std::size_t level);
  void write(std::size_t level, PageNumber next);

  Pager& pager_;
  PageNumber table_;
  std::function<PageNumber()> newPage_;
  std::vector<Level> levels_{};
};

}  // namespace orv::store::jet
