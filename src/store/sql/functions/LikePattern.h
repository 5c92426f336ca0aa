// Patterns of the Like operator.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::store::sql {

/// The wildcards of a pattern: those of Like (`*` any text, `?` a character, `#` a digit,
/// `[a-z]` and `[!a-z]` a character of a set), or those of ALike (`%` and `_`, and the sets).
enum class Wildcards { jet, ansi };

/// A pattern, compiled. Letters match without regard to case.
class LikePattern {
 public:
  /// Raises kSyntaxError for a set that is not closed.
  LikePattern(std::u32string_view pattern, Wildcards wildcards);

  bool matches(std::u32string_view text) const;

 private:
  struct Element {
    enum class Kind { character, any, digit, set, text };
    Kind kind = Kind::character;
    char32_t character = 0;
    bool negated = false;
    std::vector<std::pair<char32_t, char32_t>> ranges{};
    bool accepts(char32_t c) const;
  };
  Element readSet(std::u32string_view pattern, std::size_t& at) const;

  std::vector<Element> elements_;
};

}  // namespace orv::store::sql
