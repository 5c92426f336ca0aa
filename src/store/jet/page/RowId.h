// Where a row stands.
#pragma once

#include <compare>
#include <cstdint>

#include "store/jet/file/Bytes.h"

namespace orv::store::jet {

/// A page and the number of a row on it; stays the same when the row's content moves.
struct RowId {
  PageNumber page = 0;
  std::uint8_t row = 0;

  auto operator<=>(const RowId&) const = default;
  /// The four-byte pointer of the file format: one byte of row, three of page.
  static RowId fromPointer(std::uint32_t pointer) {
    return {pointer >> 8, static_cast<std::uint8_t>(pointer)};
  }
  std::uint32_t toPointer() const { return page << 8 | row; }
};

}  // namespace orv::store::jet
