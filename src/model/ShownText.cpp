#include "model/ShownText.h"

#include <fmt/format.h>
#include <unicode/utf8.h>

#include <iterator>

namespace orv {

namespace {

bool isBetween(UChar32 c, UChar32 first, UChar32 last) {
  return first <= c && c <= last;
}

bool steers(UChar32 c) {
  const bool isControl = (c < 0x20 && c != '\n' && c != '\t') || isBetween(c, 0x7F, 0x9F);
  const bool isSeparator = c == 0x2028 || c == 0x2029;
  const bool turnsOrder = isBetween(c, 0x202A, 0x202E) || isBetween(c, 0x2066, 0x2069);
  return isControl || isSeparator || turnsOrder;
}

}  // namespace

std::string shown(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  const auto out = std::back_inserter(result);
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    UChar32 c = 0;
    U8_NEXT(text.data(), at, text.size(), c);
    if (c == '\r' && text.substr(at).starts_with('\n')) continue;
    if (c >= 0 && !steers(c)) {
      result += text.substr(start, at - start);
    } else if (c >= 0) {
      fmt::format_to(out, "\\u{:04x}", static_cast<unsigned>(c));
    } else {
      for (const char byte : text.substr(start, at - start)) {
        fmt::format_to(out, "\\x{:02x}", static_cast<unsigned char>(byte));
      }
    }
  }
  return result;
}

}  // namespace orv
