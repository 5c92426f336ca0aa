#include "store/sql/syntax/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace orv::store::sql {

std::u32string decodeUtf8(std::string_view text) {
  std::u32string characters;
  characters.reserve(text.size());
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int32_t>(text.size());
  for (std::int32_t at = 0; at < length;) {
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(bytes, at, length, character);
    characters.push_back(static_cast<char32_t>(character));
  }
  return characters;
}

std::string encodeUtf8(std::u32string_view characters) {
  std::string text;
  text.reserve(characters.size());
  for (const char32_t character : characters) {
    std::uint8_t bytes[U8_MAX_LENGTH];
    std::int32_t length = 0;
    UBool failed = false;
    U8_APPEND(bytes, length, U8_MAX_LENGTH, static_cast<UChar32>(character), failed);
    if (!failed) {
      text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
    }
  }
  return text;
}

char32_t foldCharacter(char32_t character) {
  return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(character), U_FOLD_CASE_DEFAULT));
}

char32_t upperCharacter(char32_t character) {
  return static_cast<char32_t>(u_toupper(static_cast<UChar32>(character)));
}

char32_t lowerCharacter(char32_t character) {
  return static_cast<char32_t>(u_tolower(static_cast<UChar32>(character)));
}

std::string upperWord(std::string_view word) {
  std::string upper(word);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') {
      c = static_cast<char>(c - 'a' + 'A');
    }
  }
  return upper;
}

}  // namespace orv::store::sql
