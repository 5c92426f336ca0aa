#include "store/sql/functions/TextOrder.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>
#include <string>

#include "store/Value.h"
#include "store/jet/index/TextCodes.h"
#include "store/jet/index/TextKey.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {
namespace {

constexpr std::size_t kKeyedText = 255;  ///< characters that an index key covers

std::string_view withoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') {
    text.remove_suffix(1);
  }
  return text;
}

/// Orders what lies behind the characters that keys cover.
int compareRest(std::string_view a, std::string_view b) {
  const auto rest = [](std::string_view text) {
    std::u32string characters = decodeUtf8(text);
    characters.erase(0, std::min(kKeyedText, characters.size()));
    std::transform(characters.begin(), characters.end(), characters.begin(), foldCharacter);
    return characters;
  };
  return rest(a).compare(rest(b));
}

/// A decimal number in parts; none for one with an exponent, or none at all.
struct DecimalParts {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;
};

std::optional<DecimalParts> decimalParts(std::string_view text) {
  DecimalParts parts;
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
    parts.negative = text[0] == '-';
    text.remove_prefix(1);
  }
  const std::size_t point = std::min(text.find('.'), text.size());
  parts.whole = text.substr(0, point);
  parts.fraction = text.substr(std::min(point + 1, text.size()));
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (!std::all_of(parts.whole.begin(), parts.whole.end(), isDigit) ||
      !std::all_of(parts.fraction.begin(), parts.fraction.end(), isDigit) ||
      (parts.whole.empty() && parts.fraction.empty())) {
    return std::nullopt;
  }
  parts.whole.remove_prefix(std::min(parts.whole.find_first_not_of('0'), parts.whole.size()));
  while (!parts.fraction.empty() && parts.fraction.back() == '0') {
    parts.fraction.remove_suffix(1);
  }
  parts.negative = parts.negative && !(parts.whole.empty() && parts.fraction.empty());
  return parts;
}

int compareMagnitudes(const DecimalParts& a, const DecimalParts& b) {
  if (a.whole.size() != b.whole.size()) {
    return a.whole.size() < b.whole.size() ? -1 : 1;
  }
  const int whole = a.whole.compare(b.whole);
  return whole != 0 ? whole : a.fraction.compare(b.fraction);
}

}  // namespace

TextOrder::TextOrder(const jet::SortOrder& order) : order_(order) {
  const jet::TextCodes& codes = jet::TextCodes::of(order);
  for (std::size_t c = 0; c < codes_.size(); ++c) {
    const jet::CharacterCode& code = codes[static_cast<char16_t>(c)];
    const auto primary = codes.primary(code);
    if (code.kind == jet::CharacterCode::Kind::letter && code.accentSize == 0 &&
        primary.size() <= codes_[c].bytes.size()) {
      codes_[c].size = static_cast<std::uint8_t>(primary.size());
      std::copy(primary.begin(), primary.end(), codes_[c].bytes.begin());
    }
  }
}

const TextOrder& TextOrder::standard() {
  static const TextOrder order{jet::SortOrder{}};
  return order;
}

int TextOrder::compare(std::string_view a, std::string_view b) const {
  if (a.size() > kKeyedText || b.size() > kKeyedText) {
    return compareKeys(a, b);
  }
  a = withoutTrailingBlanks(a);
  b = withoutTrailingBlanks(b);
  const std::size_t common = std::min(a.size(), b.size());
  int order = 0;
  for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
    // All characters have to be plain: one that is not may count only after all that follow.
    for (const std::string_view text : {a, b}) {
      const std::size_t c = i < text.size() ? static_cast<unsigned char>(text[i]) : 0x61;
      if (c >= codes_.size() || codes_[c].size == 0) {
        return compareKeys(a, b);
      }
    }
    if (order == 0 && i < common) {
      const Code& left = codes_[static_cast<unsigned char>(a[i])];
      const Code& right = codes_[static_cast<unsigned char>(b[i])];
      order = std::memcmp(left.bytes.data(), right.bytes.data(), left.bytes.size());
    }
  }
  if (order != 0) {
    return order;
  }
  return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

int TextOrder::compareKeys(std::string_view a, std::string_view b) const {
  Bytes left;
  Bytes right;
  jet::appendTextKey(left, a, order_, true);
  jet::appendTextKey(right, b, order_, true);
  if (left != right) {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end()) ? -1
                                                                                              : 1;
  }
  return a.size() > kKeyedText || b.size() > kKeyedText ? compareRest(a, b) : 0;
}

int compareDecimals(std::string_view a, std::string_view b) {
  const auto left = decimalParts(a);
  const auto right = decimalParts(b);
  if (left && right) {
    if (left->negative != right->negative) {
      return left->negative ? -1 : 1;
    }
    const int order = compareMagnitudes(*left, *right);
    return left->negative ? -order : order;
  }
  double x = 0;
  double y = 0;
  const bool numbers = std::from_chars(a.data(), a.data() + a.size(), x).ec == std::errc() &&
                       std::from_chars(b.data(), b.data() + b.size(), y).ec == std::errc();
  return numbers ? (x < y ? -1 : x > y ? 1 : 0) : a.compare(b);
}

}  // namespace orv::store::sql
