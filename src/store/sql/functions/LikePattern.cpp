#include "store/sql/functions/LikePattern.h"

#include <algorithm>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/sql/syntax/Text.h"

namespace orv::store::sql {

LikePattern::LikePattern(std::u32string_view pattern, Wildcards wildcards) {
  const bool jet = wildcards == Wildcards::jet;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const char32_t c = pattern[at];
    Element element;
    if (c == (jet ? U'*' : U'%')) {
      element.kind = Element::Kind::text;
    } else if (c == (jet ? U'?' : U'_')) {
      element.kind = Element::Kind::any;
    } else if (c == U'#' && jet) {
      element.kind = Element::Kind::digit;
    } else if (c == U'[') {
      element = readSet(pattern, at);
    } else {
      element.character = foldCharacter(c);
    }
    elements_.push_back(std::move(element));
  }
}

/// Reads `[...]`; leaves `at` on its closing bracket. A `-` at either end stands for itself; an
/// empty set matches nothing.
LikePattern::Element LikePattern::readSet(std::u32string_view pattern, std::size_t& at) const {
  Element set;
  set.kind = Element::Kind::set;
  std::size_t i = at + 1;
  if (i < pattern.size() && pattern[i] == U'!') {
    set.negated = true;
    ++i;
  }
  const std::size_t close = pattern.find(U']', std::min(i, pattern.size()));
  if (close == std::u32string_view::npos) {
    throw Error(kSyntaxError, "A pattern of Like has a [ without its ]");
  }
  while (i < close) {
    char32_t low = pattern[i];
    char32_t high = low;
    if (i + 2 < close && pattern[i + 1] == U'-') {
      high = pattern[i + 2];
      i += 2;
    }
    ++i;
    set.ranges.emplace_back(foldCharacter(low), foldCharacter(high));
  }
  at = close;
  return set;
}

bool LikePattern::Element::accepts(char32_t c) const {
  switch (kind) {
    case Kind::character:
      return foldCharacter(c) == character;
    case Kind::any:
    case Kind::text:
      return true;
    case Kind::digit:
      return c >= U'0' && c <= U'9';
    case Kind::set:
      break;
  }
  const char32_t folded = foldCharacter(c);
  const bool inside = std::any_of(ranges.begin(), ranges.end(), [&](const auto& range) {
    return folded >= range.first && folded <= range.second;
  });
  return inside != negated;
}

bool LikePattern::matches(std::u32string_view text) const {
  // Goes back only to the latest `*`: an earlier one could not match more.
  std::size_t element = 0;
  std::size_t at = 0;
  std::size_t starElement = elements_.size();
  std::size_t starAt = 0;
  while (at < text.size()) {
    const bool more = element < elements_.size();
    if (more && elements_[element].kind == Element::Kind::text) {
      starElement = element++;
      starAt = at;
    } else if (more && elements_[element].accepts(text[at])) {
      ++element;
      ++at;
    } else if (starElement < elements_.size()) {
      element = starElement + 1;
      at = ++starAt;
    } else {
      return false;
    }
  }
  return std::all_of(elements_.begin() + static_cast<std::ptrdiff_t>(element), elements_.end(),
                     [](const Element& e) { return e.kind == Element::Kind::text; });
}

}  // namespace orv::store::sql
