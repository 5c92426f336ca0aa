// A pane file's text in pieces that can be changed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv::textfile {

/// The text is cut into comments, line breaks and what stands between them. Comments and line
/// breaks stay as they are, so that every piece keeps its line.
class SpectralText {
 public:
  /// What a piece outside of comments is, as far as it can be told.
  enum class Part {
    other,     ///< nothing, or what stands where the format has nothing
    heading,   ///< words before the numbers, which the format has no place for
    scalars,   ///< units, thickness, conductivity
    infrared,  ///< the lines TIR and Emis
    data,      ///< a line of the spectrum
  };

  struct Piece {
    std::string text;
    bool isCode = false;  ///< no comment, no line break
    Part part = Part::other;
  };

  explicit SpectralText(std::string_view text);

  /// All pieces put together.
  std::string text() const;

  /// The pieces of a part, in order.
  std::vector<Piece*> pieces(Part part);
  /// All pieces outside of comments.
  std::vector<Piece*> code();

  /// Finds the parts anew, after the pieces were changed.
  void findParts();

 private:
  std::vector<Piece> pieces_;
};

/// The words of a piece, parted by blanks and tabs.
std::vector<std::string_view> wordsOf(std::string_view text);

/// The words of a piece with each replaced by what `change` makes of it; the blanks stay. True when
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

}  // namespace orv::textfile
