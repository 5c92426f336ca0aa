// Key bytes of text.
#pragma once

#include <string_view>

#include "store/Value.h"
#include "store/jet/Format.h"

namespace orv::store::jet {

/// Characters (UTF-16 units) of a text that count in an index; what follows them does not.
inline constexpr std::size_t kMaxIndexedText = 255;

/// Appends the key bytes of a text (UTF-8) in a sort order, with their terminator: bytes whose
/// order, compared as unsigned, is the order of texts, without regard to case and to blanks at
/// the end. For a descending column they are inverted. Raises kNotSupported for a sort order
/// whose codes are not known.
void appendTextKey(Bytes& key, std::string_view text, const SortOrder& order, bool ascending);

}  // namespace orv::store::jet
