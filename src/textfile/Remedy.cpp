#include "textfile/Remedy.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "model/Text.h"
#include "textfile/Number.h"
#include "textfile/repairs/Words.h"

namespace orv::textfile {

namespace {

constexpr std::string_view kBeginning =
    "A pane file begins with SI or IP, Microns or Nanometers, the thickness and the conductivity: "
    "SI Microns 4.0 1.0";

Remedy orTolerant(std::string text) {
  return {std::move(text), true};
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// "0.5" for "0,5"; empty for a word that no decimal comma explains.
std::string withPoint(std::string_view word) {
  std::string result(word);
  if (std::ranges::count(result, ',') != 1) return {};
  *std::ranges::find(result, ',') = '.';
  return parseDouble(result) ? result : std::string();
}

}  // namespace

Remedy remedyForNumber(std::string_view word) {
  if (word.empty()) return {"The line, or the file, ends before the number."};
  if (word.find('\x1A') != std::string_view::npos) {
    return orTolerant("Delete the end-of-file character (Ctrl-Z).");
  }
  if (word.find("\u00A0") != std::string_view::npos) {
    return orTolerant("Put a blank in place of the no-break space.");
  }
  if (word.starts_with('#')) return orTolerant("Put comments between braces: { ... }.");
  if (word.find(';') != std::string_view::npos) {
    return orTolerant("Put blanks or tabs between the columns.");
  }
  if (const auto number = withPoint(word); !number.empty()) {
    return orTolerant(fmt::format("Write a point before the decimals: {}.", number));
  }
  if (word.find(',') != std::string_view::npos) {
    return orTolerant("Put blanks or tabs between the columns.");
  }
  if (word.ends_with('%')) {
    return orTolerant("Write fractions of 1 in place of percent.");
  }
  if (const auto number = withExponentE(word); !number.empty()) {
    return orTolerant(fmt::format("Write E before the exponent: {}.", number));
  }
  const auto number = leadingNumber(word);
  if (!number.empty() && number.size() < word.size() && isLetter(word.back())) {
    return orTolerant(fmt::format("Leave the unit out: {}.", number));
  }
  if (lowerCase(word) == "mm") return orTolerant("Leave the unit out.");
  if (isLetter(word.front())) return orTolerant("Put headings between braces: { ... }.");
  return {};
}

Remedy remedyForWavelengthUnit(std::string_view word) {
  if (const auto name = wavelengthUnitName(word); !name.empty()) {
    return orTolerant(fmt::format("Write {}.", name));
  }
  return {"It is Microns or Nanometers."};
}

Remedy remedyForBeginning(std::string_view word) {
  if (word.empty()) return {"The file is empty, or all of it is comments."};
  if (word.starts_with('#')) return orTolerant("Put comments between braces: { ... }.");
  return {fmt::format("{}.", kBeginning)};
}

}  // namespace orv::textfile
