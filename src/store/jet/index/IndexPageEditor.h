// Changes to one index page.
#pragma once

#include <span>
#include <vector>

#include "store/jet/index/IndexPage.h"

namespace orv::store::jet {

/// Edits the bytes of an index page in place. They are those of Pager::modify(), so an editor
/// lives no longer than they do. Only for formats that are written: not Jet 3.
class IndexPageEditor : public IndexPage {
 public:
  IndexPageEditor(const Format& format, std::uint8_t* bytes, PageNumber page);
  /// The editor of a page within a transaction.
  IndexPageEditor(Pager& pager, PageNumber page)
      : IndexPageEditor(pager.format(), pager.modify(page), page) {}

  /// Makes `bytes` an index page without entries and neighbours; of leaves, level 0.
  static void initialize(const Format& format, std::uint8_t* bytes, PageNumber owner,
                         std::uint8_t level);

  void setPrevious(PageNumber page);
  void setNext(PageNumber page);
  void setTail(PageNumber page);

  /// Puts an entry (whole) before entry `at`. Only when it does not fit as the page is, the
  /// page is written anew with the longest prefix. False, with nothing changed, when that is
  /// not enough.
  bool insert(std::size_t at, std::span<const std::uint8_t> entry);
  void erase(std::size_t at) { erase(at, at + 1); }
  /// Removes the entries from `from` on, but for those from `to` on.
  void erase(std::size_t from, std::size_t to);
  /// All entries, with `entry` before entry `at`. Raises kCorruptFile when they are out of order.
  std::vector<Bytes> entriesWith(std::size_t at, std::span<const std::uint8_t> entry) const;
  /// Replaces all entries. They must be in order and fit.
  void assign(std::span<const Bytes> entries);
  /// Whether entries fit on a page of this kind.
  bool fits(std::span<const Bytes> entries) const;
  /// The largest entry of which every page of a format has room for three.
  static std::size_t maxEntrySize(const Format& format);
  /// Raises kNotSupported for an entry of a leaf that is too long to part the pages above it.
  static void refuseTooLong(const Format& format, std::span<const std::uint8_t> entry);

 private:
  using Entry = std::span<const std::uint8_t>;

  std::vector<Entry> viewsWith(std::size_t at, Entry entry, Bytes& whole) const;
  void refuseDisorder(std::span<const Entry> entries) const;
  template <class Bytes>
  void write(std::span<const Bytes> entries);
  template <class Bytes>
  std::size_t commonPrefix(std::span<const Bytes> entries) const;
  template <class Bytes>
  bool fits(std::span<const Bytes> entries) const;
  void setPrefixSize(std::size_t size);
  /// Writes the mask from entry `from` on, and the free space.
  void writeMask(std::size_t from);
  void insertInPlace(std::size_t at, std::span<const std::uint8_t> rest);

  std::uint8_t* bytes_;
  std::uint8_t* entries_;  ///< `data_`, to be changed
};

}  // namespace orv::store::jet
