// What a user can do about a word that the readers of spectral files refuse.
#pragma once

#include <string>
#include <string_view>

namespace orv::textfile {

struct Remedy {
  std::string text;
  /// Whether the tolerant reading, which is of panes only, does it by itself.
  bool byTolerance = false;

  /// The text, and where it helps the tolerant reading.
  std::string forPanes() const {
    return byTolerance ? text + " Or have the file read tolerantly (--tolerant)." : text;
  }
};

/// About a word where a number should stand, or where there is none.
Remedy remedyForNumber(std::string_view word);

/// About a word where the unit of the wavelengths should stand.
Remedy remedyForWavelengthUnit(std::string_view word);

/// About the word where a pane file should begin with its system of units.
Remedy remedyForBeginning(std::string_view word);

}  // namespace orv::textfile
