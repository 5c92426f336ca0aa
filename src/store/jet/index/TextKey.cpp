// Builds the keys of text. Since Jet 4 a key has the parts of a Windows sort key:
//
//   primary codes 01 accents [01 01 [kana sizes] 01 punctuation] 00
//
// - The primary codes of all letters: what the text is, without case, accents and hyphens.
// - One accent byte a letter, 02 for none; those at the end that say nothing are left out. A
//   letter that expands, such as ß or a ligature, counts as those it expands to.
// - The part of the case would stand between the two 01 that follow; it is always empty.
// - Sizes of kana (small ones or not), three to a byte, and constant bytes that end the part.
// - Hyphens, apostrophes and control characters, each with its place, so that "coop" and "co-op"
//   stand side by side.
// Parts that are empty at the end are left out. Jet 3 has just the primary codes and, between two
// halves of a byte that are 0, the accents in halves of a byte.
#include "store/jet/index/TextKey.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>

#include "errors/Error.h"
#include "store/StoreError.h"
#include "store/jet/index/TextCodes.h"

namespace orv::store::jet {
namespace {

using Kind = CharacterCode::Kind;

constexpr std::uint8_t kEndOfPart = 0x01;
constexpr std::uint8_t kEndOfText = 0x00;
constexpr std::uint8_t kNoAccent = 0x02;
/// Since Access 2010, longer keys end early, in two bytes whose rule is not known.
constexpr std::size_t kMaxKeySize = 508;
constexpr std::uint8_t kBoundary = 0x0;  ///< half byte around the accents of Jet 3

/// The part of a text that counts, in UTF-16.
class IndexedText {
 public:
  explicit IndexedText(std::string_view text) {
    const char* bytes = text.data();
    const std::size_t length = text.size();
    for (std::size_t i = 0; i < length && size_ < kMaxIndexedText;) {
      UChar32 c = static_cast<std::uint8_t>(bytes[i]);
      if (c < 0x80) {
        ++i;
      } else {
        U8_NEXT_OR_FFFD(bytes, i, length, c);
      }
      if (U_IS_BMP(c)) {
        units_[size_++] = static_cast<char16_t>(c);
        continue;
      }
      units_[size_++] = U16_LEAD(c);
      if (size_ < kMaxIndexedText) units_[size_++] = U16_TRAIL(c);
    }
    while (size_ > 0 && units_[size_ - 1] == u' ') --size_;
  }

  const char16_t* begin() const { return units_.data(); }
  const char16_t* end() const { return units_.data() + size_; }

 private:
  std::array<char16_t, kMaxIndexedText> units_;
  std::size_t size_ = 0;
};

void append(Bytes& to, std::span<const std::uint8_t> bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
}

/// The parts of a key that follow the primary codes.
class LaterParts {
 public:
  /// Notes a character; `letters` are those before it.
  void add(const CharacterCode& code, std::span<const std::uint8_t> accent, std::size_t letters) {
    switch (code.kind) {
      case Kind::combining:
        combine(accent.front(), letters);
        break;
      case Kind::punctuation:
        addPunctuation(accent, letters);
        break;
      default:
        if (code.accentSize > 0) {
          fill(letters);
          append(accents_, accent);
        }
        if (code.kind == Kind::kana) kanaSizes_.push_back(code.kanaSize);
    }
  }

  void write(Bytes& key) {
    while (!accents_.empty() && accents_.back() <= kNoAccent) accents_.pop_back();
    append(key, accents_);
    const bool hasKana = !kanaSizes_.empty();
    const bool hasPunctuation = !punctuation_.empty();
    if (!hasKana && !hasPunctuation) return;
    key.push_back(kEndOfPart);
    key.push_back(kEndOfPart);
    if (hasKana) writeKana(key);
    if (!hasPunctuation) return;
    if (hasKana) key.push_back(0xff);
    key.push_back(kEndOfPart);
    append(key, punctuation_);
  }

 private:
  void fill(std::size_t letters) {
    const std::size_t size = letters + strays_;
    if (accents_.size() < size) accents_.resize(size, kNoAccent);
  }

  void combine(std::uint8_t accent, std::size_t letters) {
    fill(letters);
    if (accents_.empty()) {
      accents_.push_back(accent);
      strays_ = 1;
    } else {
      accents_.back() = static_cast<std::uint8_t>(accents_.back() + accent);
    }
  }

  void addPunctuation(std::span<const std::uint8_t> code, std::size_t letters) {
    const std::size_t place = 0x8000 | (7 + 4 * letters);
    punctuation_.push_back(static_cast<std::uint8_t>(place >> 8));
    punctuation_.push_back(static_cast<std::uint8_t>(place));
    punctuation_.push_back(0x06);
    append(punctuation_, code);
  }

  void writeKana(Bytes& key) {
    constexpr std::array<std::uint8_t, 5> kEnd{0xff, 0x02, 0x80, 0xff, 0x80};
    while (!kanaSizes_.empty() && kanaSizes_.back() == 3) kanaSizes_.pop_back();
    for (std::size_t i = 0; i < kanaSizes_.size(); i += 3) {
      unsigned packed = 0x80;
      for (std::size_t j = 0; j < 3 && i + j < kanaSizes_.size(); ++j) {
        packed |= static_cast<unsigned>(kanaSizes_[i + j]) << (4 - 2 * j);
      }
      key.push_back(static_cast<std::uint8_t>(packed));
    }
    append(key, kEnd);
  }

  Bytes accents_;
  std::size_t strays_ = 0;  ///< bytes of `accents_` that belong to no letter: 1 when the text
                            ///< begins with a combining character
  Bytes kanaSizes_;
  Bytes punctuation_;
};

std::size_t lettersOf(const CharacterCode& code, Expansion expansion) {
  return expansion == Expansion::letters ? code.letters : std::min<std::size_t>(code.letters, 1);
}

void appendJet4(Bytes& key, const IndexedText& text, const TextCodes& codes, Expansion expansion) {
  LaterParts later;
  std::size_t letters = 0;
  for (const char16_t unit : text) {
    const CharacterCode& code = codes[unit];
    append(key, codes.primary(code));
    if (code.kind != Kind::letter || code.accentSize > 0) {
      later.add(code, codes.accent(code), letters);
    }
    letters += lettersOf(code, expansion);
  }
  key.push_back(kEndOfPart);
  later.write(key);
}

/// Half bytes, the high one first.
class HalfBytes {
 public:
  explicit HalfBytes(Bytes& key) : key_(key) {}
  void add(std::uint8_t half) {
    if (high_) {
      key_.push_back(static_cast<std::uint8_t>(half << 4));
    } else {
      key_.back() |= half & 0x0f;
    }
    high_ = !high_;
  }

 private:
  Bytes& key_;
  bool high_ = true;
};

void appendJet3(Bytes& key, const IndexedText& text, const TextCodes& codes, Expansion expansion) {
  std::size_t accentable = 0;  ///< since the last accent
  Bytes accents;
  for (const char16_t unit : text) {
    const CharacterCode& code = codes[unit];
    append(key, codes.primary(code));
    if (code.kind == Kind::accentable) accentable += lettersOf(code, expansion);
    if (code.accentSize == 0) continue;
    accents.insert(accents.end(), accentable, kNoAccent);
    accents.push_back(codes.accent(code).front());
    accentable = 0;
  }
  HalfBytes halves(key);
  halves.add(kBoundary);
  for (const std::uint8_t accent : accents) halves.add(accent);
  halves.add(kBoundary);
}

void invert(Bytes& key, std::size_t from) {
  std::transform(key.begin() + static_cast<std::ptrdiff_t>(from), key.end(),
                 key.begin() + static_cast<std::ptrdiff_t>(from),
                 [](std::uint8_t byte) { return static_cast<std::uint8_t>(~byte); });
}

}  // namespace

void appendTextKey(Bytes& key, std::string_view text, const SortOrder& order, bool ascending,
                   Expansion expansion) {
  const TextCodes& codes = TextCodes::of(order);
  const IndexedText indexed(text);
  const std::size_t start = key.size();
  if (order.jet3) {
    appendJet3(key, indexed, codes, expansion);
    if (!ascending) invert(key, start);
    return;
  }
  appendJet4(key, indexed, codes, expansion);
  if (order.version > 0 && key.size() - start >= kMaxKeySize) {
    throw Error(kNotSupported, "A text is too long to be looked up in an index of its column.");
  }
  if (!ascending) {
    key.push_back(kEndOfText);
    invert(key, start);
  }
  key.push_back(kEndOfText);
}

}  // namespace orv::store::jet
