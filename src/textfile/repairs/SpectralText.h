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

}  // namespace orv::textfile
