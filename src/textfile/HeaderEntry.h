// The descriptive entries of spectral files: comments of the form "{ Key: value }".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "textfile/Place.h"
#include "textfile/Tokenizer.h"

namespace orv::textfile {

/// One entry. The key is what stands before the first colon, the value all that follows it, both
/// without the blanks around them.
struct HeaderEntry {
  std::string_view key;
  std::string_view value;
  Place place;

  /// Whether this is the key, letter case ignored.
  bool hasKey(std::string_view name) const;

  /// The value as a number; `ifEmpty` when there is none. Anything else raises error 13, which
  /// names the place, the key and the value.
  double number(double ifEmpty = 0) const;
  std::int32_t wholeNumber(std::int32_t ifEmpty = 0) const;
};

/// The entries among the comments that a tokenizer has passed; other comments are left out.
std::vector<HeaderEntry> headerEntries(const Tokenizer& tokenizer);

}  // namespace orv::textfile
