// The keys that the indexes of a table should have.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "store/jet/page/RowId.h"

namespace orv::store::jet {

/// For each row the key that each index should have of it, as a hash of 30 bits: 4 bytes a row
/// and 4 more for each index, so that tables of any size can be checked index by index without
/// a search of the tree for every row.
class RowKeys {
 public:
  enum class Match {
    right,
    noRow,      ///< there is no such row
    notMeant,   ///< the row should have no entry in the index
    otherKey,   ///< the row has other values
    otherForm,  ///< the key is the one that another program gives to the row's values
    again,      ///< the row has had its entry
  };

  RowKeys(std::size_t indexes, std::size_t rows);

  /// Adds a row; rows come in ascending order. It has no entry in any index until expect() or
  /// expectAny() is called.
  void add(RowId row);
  /// The row last added has this key in an index; `hasNull` when one of its values is Null.
  void expect(std::size_t index, std::span<const std::uint8_t> key, bool hasNull);
  /// Another program would give the row last added this key in an index.
  void expectForm(std::size_t index, std::span<const std::uint8_t> key);
  /// The row last added has an entry in an index whose key is not known.
  void expectAny(std::size_t index, bool hasNull);
  /// Rows of this page could not be read: any entry for them will do.
  void addUnreadable(PageNumber page) { unreadable_.insert(page); }

  /// Compares an entry of an index with what is expected, and notes that it is there.
  Match match(std::size_t index, RowId row, std::span<const std::uint8_t> key);
  bool hasNull(std::size_t index, RowId row) const;
  /// Gives `visit` the rows whose entry has not been matched.
  template <class Visitor>
  void forEachMissing(std::size_t index, Visitor visit) const {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      if (const std::uint32_t key = keys_[index][i]; key != kNone && (key & kFoundBit) == 0) {
        visit(RowId::fromPointer(rows_[i]));
      }
    }
  }

 private:
  static constexpr std::uint32_t kFoundBit = 1;
  static constexpr std::uint32_t kNullBit = 2;
  static constexpr std::uint32_t kHashBits = ~std::uint32_t{3};
  static constexpr std::uint32_t kNone = 0;
  static constexpr std::uint32_t kAny = 4;

  static std::uint32_t hash(std::span<const std::uint8_t> key);
  std::size_t find(RowId row) const;

  std::vector<std::uint32_t> rows_;               ///< pointers, ascending
  std::vector<std::vector<std::uint32_t>> keys_;  ///< by index and row: hash and bits
  std::map<std::pair<std::size_t, std::uint32_t>, std::uint32_t>
      otherForms_;  ///< by index and row: hashes of keys of other programs
  std::set<PageNumber> unreadable_;
};

}  // namespace orv::store::jet
