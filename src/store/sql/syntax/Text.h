// Characters of UTF-8 text, and words compared without regard to case.
#pragma once

#include <string>
#include <string_view>

namespace orv::store::sql {

/// The code points of UTF-8 text; a malformed byte becomes U+FFFD.
std::u32string decodeUtf8(std::string_view text);
std::string encodeUtf8(std::u32string_view characters);

/// One character with its case taken away, accents kept.
char32_t foldCharacter(char32_t character);
char32_t upperCharacter(char32_t character);
char32_t lowerCharacter(char32_t character);

/// The text with ASCII letters in upper case: the form in which words of SQL are compared.
std::string upperWord(std::string_view word);

}  // namespace orv::store::sql
