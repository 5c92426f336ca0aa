// Key bytes of text.
#pragma once

#include <cstdint>
#include <string_view>

#include "store/Value.h"
#include "store/jet/page/Format.h"

namespace orv::store::jet {

/// Characters (UTF-16 units) of a text that count in an index; what follows them does not.
inline constexpr std::size_t kMaxIndexedText = 255;

/// How letters that expand count among the accents and in the places of punctuation: ß, æ, ﬁ.
enum class Expansion : std::uint8_t {
  letters,   ///< as those that they expand to, which is right
  oneLetter  ///< as one: another program that writes these files does
};

/// Appends the key bytes of a text (UTF-8) in a sort order, with their terminator: bytes whose
/// order, compared as unsigned, is the order of texts, without regard to case and to blanks at
/// the end. For a descending column they are inverted. Raises kNotSupported for a sort order
/// whose codes are not known, and for a long text whose key Access would shorten.
void appendTextKey(Bytes& key, std::string_view text, const SortOrder& order, bool ascending,
                   Expansion expansion = Expansion::letters);

}  // namespace orv::store::jet
