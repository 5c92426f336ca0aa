// Rows onto new pages, one page after the other.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "store/Value.h"
#include "store/jet/page/Pager.h"
#include "store/jet/page/RowId.h"
#include "store/jet/row/LongValue.h"

namespace orv::store::jet {

class CopyTarget;

/// The pages of one owner: of a table's rows, of a column's long values, or of maps.
class RowFiller {
 public:
  RowFiller(CopyTarget& target, std::uint32_t owner) : target_(target), owner_(owner) {}

  RowId add(std::span<const std::uint8_t> row);
  /// Puts a long value onto pages of long values, which this fills: its parts, one after the other.
  /// Gives its length, form and place.
  LongValueDefinition addLongValue(std::span<const std::uint8_t> value);
  /// Writes the last page.
  void finish();

  /// All pages, ascending, after finish().
  const std::vector<PageNumber>& pages() const { return pages_; }
  /// Those with room worth offering for more rows.
  const std::vector<PageNumber>& pagesWithRoom() const { return pagesWithRoom_; }

 private:
  void openPage();
  void closePage(std::size_t leastRoom);
  void writeAlone(PageNumber page, std::span<const std::uint8_t> row);

  CopyTarget& target_;
  std::uint32_t owner_;
  PageNumber page_ = 0;  ///< the one being filled; 0 for none
  Bytes bytes_{};        ///< of it
  std::vector<PageNumber> pages_{};
  std::vector<PageNumber> pagesWithRoom_{};
};

}  // namespace orv::store::jet
