#pragma once

#include <string_view>

namespace orv::textfile {

/// What kind of file a text looks like.
enum class Likeness { neither, pane, shading };

/// Judges by what the readers would read, not by words in comments: a pane file begins with its
/// unit system, a shading file with rows of nine numbers, or it has entries that only shadings
/// have.
Likeness likenessOf(std::string_view text);

}  // namespace orv::textfile
