#include "textfile/Likeness.h"

#include <algorithm>
#include <array>

#include "errors/Error.h"
#include "model/ShadingSpectralPoint.h"
#include "model/Text.h"
#include "textfile/HeaderEntry.h"
#include "textfile/Number.h"
#include "textfile/Tokenizer.h"

namespace orv::textfile {

namespace {

constexpr std::array<std::string_view, 3> kFirstWordsOfPanes = {"SI", "IP", "NFRC"};
constexpr std::array<std::string_view, 5> kKeysOfShadings = {"Product type", "Crown height",
                                                             "Pitch", "Permeability", "Units"};

/// The number of words on the line that begins with `first`, when they are all numbers; else 0.
std::size_t numbersOnLine(Tokenizer& tokenizer, Token first) {
  std::size_t count = 0;
  for (Token token = first; token.isWord(); token = tokenizer.GetToken()) {
    if (!parseDouble(token.text)) return 0;
    ++count;
  }
  return count;
}

bool hasKeyOfShadings(Tokenizer& tokenizer) {
  while (tokenizer.GetToken().type != TokenType::EndOfText) {
  }
  const auto entries = headerEntries(tokenizer);
  return std::ranges::any_of(entries, [](const HeaderEntry& entry) {
    return std::ranges::any_of(kKeysOfShadings,
                               [&](std::string_view key) { return entry.hasKey(key); });
  });
}

}  // namespace

Likeness likenessOf(std::string_view text) {
  try {
    Tokenizer tokenizer(text, "");
    Token first = tokenizer.GetToken();
    while (first.type == TokenType::EndOfLine) first = tokenizer.GetToken();
    const bool isPane = std::ranges::any_of(kFirstWordsOfPanes, [&](std::string_view word) {
      return equalIgnoringCase(word, first.text);
    });
    if (isPane) return Likeness::pane;
    const bool hasShadingRow = numbersOnLine(tokenizer, first) >= kShadingSpectralColumns.size();
    if (hasShadingRow || hasKeyOfShadings(tokenizer)) return Likeness::shading;
  } catch (const Error&) {
    // A text that the tokenizer refuses tells nothing; its reader will say why.
  }
  return Likeness::neither;
}

}  // namespace orv::textfile
