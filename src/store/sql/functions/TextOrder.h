// The order of text and of fixed-point numbers in comparisons.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "store/jet/page/Format.h"

namespace orv::store::sql {

/// Compares text as the indexes of a sort order do: without regard to case, accents distinct,
/// trailing blanks passed over. So what SQLite compares and what an index finds agree.
class TextOrder {
 public:
  /// Raises kNotSupported for a sort order whose codes are not known.
  explicit TextOrder(const jet::SortOrder& order);

  /// The order "General" of Jet 4.
  static const TextOrder& standard();

  const jet::SortOrder& sortOrder() const { return order_; }
  /// Below 0, 0, or above 0, as `a` comes before, with, or after `b`.
  int compare(std::string_view a, std::string_view b) const;

 private:
  /// The code of an ASCII character that has nothing but one; no size for others.
  struct Code {
    std::uint8_t size;
    std::array<std::uint8_t, 3> bytes{};
  };
  int compareKeys(std::string_view a, std::string_view b) const;

  jet::SortOrder order_;
  std::array<Code, 128> codes_{};
};

/// Compares two numbers in decimal text by their values.
int compareDecimals(std::string_view a, std::string_view b);

}  // namespace orv::store::sql
