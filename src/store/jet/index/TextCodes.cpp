// Reads the tables of codes. They are rows of text, each a Unicode character (four hexadecimal
// digits) and the tokens of that character and those that follow it; characters in no row are
// ignored. Codes are hexadecimal bytes. A token is one of
//
//   -          an ignored character
//   4A         a letter with the primary code 4A
//   4A.51      a letter that expands to two
//   4A/0F      a letter with the primary code 4A and the accent code 0F
//   /0F        the same, with the primary code of the letter before
//   s60        an accentable letter of Jet 3
//   a7F02 k7F02/05   kana, of size 2 (small ones) and 3
//   m0C        a combining character that adds 0C to an accent code
//   u80        punctuation of code 80
//
// and may be followed by `*n` (n such characters) and, before that, `+d` (the primary code grows
// by d from one to the next) and `^d` (the accent code does). Bytes of primary codes go from 02
// to FF: 00 and 01 end the parts of a key.
#include "store/jet/index/TextCodes.h"

#include <fmt/format.h>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/index/SortOrders.h"

namespace orv::store::jet {
namespace {

using Kind = CharacterCode::Kind;

constexpr const char* kGeneral97[] = {
#include "store/jet/index/TextCodesGeneral97.inc"
};
constexpr const char* kGeneralLegacy[] = {
#include "store/jet/index/TextCodesGeneralLegacy.inc"
};
constexpr const char* kGeneral[] = {
#include "store/jet/index/TextCodesGeneral.inc"
};

constexpr std::size_t kUnits = 0x10000;
constexpr CharacterCode kLetter{.kind = Kind::letter, .letters = 1};

/// A code being read or stepped: up to four letters of two bytes.
struct CodeBytes {
  std::array<std::uint8_t, 8> bytes{};
  std::size_t size = 0;
  std::uint8_t letters = 1;

  operator std::span<const std::uint8_t>() const { return {bytes.data(), size}; }
};

/// Adds `step` to a primary code, whose bytes go from 02 to FF.
void advancePrimary(CodeBytes& code, unsigned step) {
  for (std::size_t i = code.size; i-- > 0 && step > 0;) {
    const unsigned value = code.bytes[i] - 2u + step;
    code.bytes[i] = static_cast<std::uint8_t>(2 + value % 254);
    step = value / 254;
  }
}

CodeBytes primaryAt(std::uint8_t first, unsigned distance) {
  CodeBytes code{{first, 2}, 2};
  advancePrimary(code, distance);
  return code;
}

/// Takes a row apart. The tables are constants of the program, so their form is relied on.
class RowReader {
 public:
  explicit RowReader(const char* row) : at_(row) {}

  bool skip(char c) {
    if (*at_ != c) return false;
    ++at_;
    return true;
  }
  std::uint8_t hexByte() {
    const unsigned high = hexDigit();
    return static_cast<std::uint8_t>(high << 4 | hexDigit());
  }
  CodeBytes code() {
    CodeBytes code;
    while (isHexDigit()) {
      code.bytes[code.size++] = hexByte();
      if (skip('.')) ++code.letters;
    }
    return code;
  }
  unsigned numberAfter(char sign, unsigned otherwise) {
    if (!skip(sign)) return otherwise;
    unsigned number = 0;
    while (*at_ >= '0' && *at_ <= '9') number = number * 10 + static_cast<unsigned>(*at_++ - '0');
    return number;
  }

 private:
  bool isHexDigit() const { return (*at_ >= '0' && *at_ <= '9') || (*at_ >= 'A' && *at_ <= 'F'); }
  unsigned hexDigit() {
    const char c = *at_++;
    return static_cast<unsigned>(c <= '9' ? c - '0' : c - 'A' + 10);
  }

  const char* at_;
};

bool isLetter(const CharacterCode& code) {
  return code.kind == Kind::letter || code.kind == Kind::accentable || code.kind == Kind::kana;
}

/// The letter that begins a token, taken off it.
CharacterCode takeKind(RowReader& row) {
  CharacterCode code;
  if (row.skip('-')) return code;
  code.kind = Kind::letter;
  if (row.skip('s')) code.kind = Kind::accentable;
  if (row.skip('m')) code.kind = Kind::combining;
  if (row.skip('u')) code.kind = Kind::punctuation;
  if (row.skip('a')) code.kanaSize = 2;
  if (row.skip('k')) code.kanaSize = 3;
  if (code.kanaSize != 0) code.kind = Kind::kana;
  return code;
}

}  // namespace

TextCodes::TextCodes(std::span<const char* const> rows) : codes_(kUnits) {
  for (const char* row : rows) addRow(row);
}

void TextCodes::addRow(const char* text) {
  RowReader row(text);
  std::size_t unit = row.hexByte() * 0x100u;
  unit += row.hexByte();
  CodeBytes primary;
  while (row.skip(' ')) {
    CharacterCode code = takeKind(row);
    CodeBytes accent;
    if (isLetter(code)) {
      if (const CodeBytes given = row.code(); given.size > 0) primary = given;
      if (row.skip('/')) accent = row.code();
      code.letters = primary.letters;
    } else {
      accent = row.code();
    }
    const unsigned step = row.numberAfter('+', 0);
    const unsigned accentStep = row.numberAfter('^', 0);
    const unsigned count = row.numberAfter('*', 1);
    for (unsigned i = 0;; ++i) {
      set(unit++, code, isLetter(code) ? primary : CodeBytes{}, accent);
      if (i + 1 == count) break;
      advancePrimary(primary, step);
      if (accent.size > 0) {
        accent.bytes[accent.size - 1] =
            static_cast<std::uint8_t>(accent.bytes[accent.size - 1] + accentStep);
      }
    }
  }
}

void TextCodes::set(std::size_t unit, CharacterCode code, std::span<const std::uint8_t> primary,
                    std::span<const std::uint8_t> accent) {
  code.at = static_cast<std::uint32_t>(bytes_.size());
  code.primarySize = static_cast<std::uint8_t>(primary.size());
  code.accentSize = static_cast<std::uint8_t>(accent.size());
  bytes_.insert(bytes_.end(), primary.begin(), primary.end());
  bytes_.insert(bytes_.end(), accent.begin(), accent.end());
  codes_[unit] = code;
}

/// Each half of a surrogate pair counts as a letter of its own, in the order of their numbers.
void TextCodes::addSurrogates() {
  constexpr CodeBytes kAccent{{0x3f}, 1};
  constexpr CodeBytes kFirstLow{{0xb4, 0xf8}, 2};
  for (unsigned i = 0; i < 0x400; ++i) {
    set(0xd800 + i, kLetter, primaryAt(0xb0, i), kAccent);
    CodeBytes low = kFirstLow;
    advancePrimary(low, i);
    set(0xdc00 + i, kLetter, low, kAccent);
  }
}

/// The private use area in groups of four that differ in their accents.
void TextCodes::addPrivateUse() {
  constexpr CodeBytes kAccents[] = {{}, {{0x43}, 1}, {{0x84}, 1}, {{0xc5}, 1}};
  for (unsigned i = 0; i < 0x1900; ++i) {
    set(0xe000 + i, kLetter, primaryAt(0xa9, i / 4), kAccents[i % 4]);
  }
}

const TextCodes& TextCodes::general97() {
  static const TextCodes codes{kGeneral97};
  return codes;
}

const TextCodes& TextCodes::generalLegacy() {
  static const TextCodes codes = [] {
    TextCodes made{kGeneralLegacy};
    made.addSurrogates();
    return made;
  }();
  return codes;
}

const TextCodes& TextCodes::general() {
  static const TextCodes codes = [] {
    TextCodes made{kGeneral};
    made.addSurrogates();
    made.addPrivateUse();
    return made;
  }();
  return codes;
}

const TextCodes& TextCodes::of(const SortOrder& order) {
  switch (knowledgeOf(order)) {
    case OrderKnowledge::all:
      return order.jet3 ? general97() : order.version == 0 ? generalLegacy() : general();
    case OrderKnowledge::ascii:
      return generalLegacy();
    case OrderKnowledge::nothing:
      break;
  }
  throw Error(
      kNotSupported,
      fmt::format("Indexes over text in the sort order \"{}\" (language {}, version {}) are "
                  "not supported. Leave their rows to Access.",
                  languageName(order.language), order.language, order.version));
}

}  // namespace orv::store::jet
