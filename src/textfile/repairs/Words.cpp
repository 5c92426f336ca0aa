#include "textfile/repairs/Words.h"

#include <algorithm>

#include "model/Text.h"
#include "textfile/Number.h"

namespace orv::textfile {

std::vector<std::string_view> wordsOf(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  std::vector<std::string_view> words;
  for (auto start = text.find_first_not_of(kBlanks); start != std::string_view::npos;) {
    const auto end = std::min(text.find_first_of(kBlanks, start), text.size());
    words.push_back(text.substr(start, end - start));
    start = text.find_first_not_of(kBlanks, end);
  }
  return words;
}

std::string_view leadingNumber(std::string_view word) {
  constexpr std::size_t kLongest = 40;
  for (std::size_t length = std::min(word.size(), kLongest); length > 0; --length) {
    if (parseDouble(word.substr(0, length))) return word.substr(0, length);
  }
  return {};
}

std::string_view wavelengthUnitName(std::string_view word) {
  const std::string unit = lowerCase(word);
  if (unit == "nm") return "Nanometers";
  // Two characters look like this: the Greek letter and the sign of a millionth.
  if (unit == "um" || unit == "\u03BCm" || unit == "\u00B5m") return "Microns";
  return {};
}

std::string withExponentE(std::string_view word) {
  std::string result(word);
  const auto letter = result.find_first_of("dD");
  if (letter == std::string::npos) return {};
  result[letter] = 'E';
  return parseDouble(result) ? result : std::string();
}

}  // namespace orv::textfile
