// The words of a pane file, and what laboratories mean by some of them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::textfile {

/// The words of a text, parted by blanks and tabs.
std::vector<std::string_view> wordsOf(std::string_view text);

/// The words of a text with each replaced by what `change` makes of it; the blanks stay. True when
/// any became another.
template <class Change>
bool changeWords(std::string& text, const Change& change) {
  std::string result;
  std::size_t end = 0;
  for (const std::string_view word : wordsOf(text)) {
    const auto start = static_cast<std::size_t>(word.data() - text.data());
    result += text.substr(end, start - end);
    result += change(word);
    end = start + word.size();
  }
  result += text.substr(end);
  const bool changed = result != text;
  text = std::move(result);
  return changed;
}

/// The longest number that a word begins with: "4.0" of "4.0mm", "300" of "300;0.1".
std::string_view leadingNumber(std::string_view word);

/// The name that the format has for a unit of wavelengths: "Nanometers" for "nm"; empty for what is
/// none.
std::string_view wavelengthUnitName(std::string_view word);

/// "1.0E-3" for "1.0D-3"; empty for a word that no such exponent explains.
std::string withExponentE(std::string_view word);

}  // namespace orv::textfile
