#include "model/Text.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace orv {

namespace {

icu::UnicodeString decoded(std::string_view text) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

std::string encoded(const icu::UnicodeString& text) {
  std::string utf8;
  text.toUTF8String(utf8);
  return utf8;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string lowerCase(std::string_view text) {
  return encoded(decoded(text).toLower(icu::Locale::getRoot()));
}

std::string upperCase(std::string_view text) {
  return encoded(decoded(text).toUpper(icu::Locale::getRoot()));
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return decoded(a).caseCompare(decoded(b), U_FOLD_CASE_DEFAULT) == 0;
}

}  // namespace orv
