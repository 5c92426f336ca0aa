// The codes of characters in text indexes, for each sort order.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "store/jet/page/Format.h"

namespace orv::store::jet {

/// How one UTF-16 unit counts in the key of a text.
struct CharacterCode {
  enum class Kind : std::uint8_t {
    ignored,      ///< leaves no trace in a key
    letter,       ///< primary bytes, perhaps with accent bytes
    accentable,   ///< Jet 3: a letter that takes a place among the accents
    kana,         ///< like `letter`; `kanaSize` is noted too
    combining,    ///< its accent byte is added to that of the character before it
    punctuation,  ///< does not count in the primary order; noted at the end, with its place
  };

  Kind kind = Kind::ignored;
  std::uint8_t kanaSize = 0;  ///< kana: 2 for small ones, else 3
  std::uint8_t letters = 0;   ///< places that it takes among the letters: as many as it expands to
  std::uint8_t primarySize = 0;  ///< bytes at `at`
  std::uint8_t accentSize = 0;   ///< bytes after the primary ones; of punctuation, its code
  std::uint32_t at = 0;          ///< place in the bytes of all codes
};

/// The codes of one sort order: a table for all UTF-16 units.
class TextCodes {
 public:
  /// The codes of a sort order, of which those may be known that ASCII text has (isKnownIn()).
  /// Raises kNotSupported, naming the order, where none are.
  static const TextCodes& of(const SortOrder& order);

  const CharacterCode& operator[](char16_t unit) const { return codes_[unit]; }
  std::span<const std::uint8_t> primary(const CharacterCode& code) const {
    return {bytes_.data() + code.at, code.primarySize};
  }
  std::span<const std::uint8_t> accent(const CharacterCode& code) const {
    return {bytes_.data() + code.at + code.primarySize, code.accentSize};
  }

 private:
  explicit TextCodes(std::span<const char* const> rows);
  static const TextCodes& general97();
  static const TextCodes& generalLegacy();
  static const TextCodes& general();
  void addRow(const char* row);
  void addSurrogates();
  void addPrivateUse();
  void set(std::size_t unit, CharacterCode code, std::span<const std::uint8_t> primary,
           std::span<const std::uint8_t> accent);

  std::vector<CharacterCode> codes_;  ///< by UTF-16 unit
  std::vector<std::uint8_t> bytes_;
};

}  // namespace orv::store::jet
