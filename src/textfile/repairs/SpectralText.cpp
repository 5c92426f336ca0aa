#include "textfile/repairs/SpectralText.h"

#include <algorithm>

#include "model/Text.h"
#include "textfile/repairs/Words.h"

namespace orv::textfile {

namespace {

constexpr std::string_view kPieceEnds = "{\r\n";

bool isBeginning(std::string_view word) {
  return equalIgnoringCase(word, "SI") || equalIgnoringCase(word, "IP");
}

bool isInfrared(std::string_view word) {
  const std::string name = lowerCase(word.substr(0, word.find('=')));
  return name == "tir" || name.starts_with("emis");
}

/// Finds the part of one piece after the other.
class PartFinder {
 public:
  SpectralText::Part of(std::string_view text) {
    using Part = SpectralText::Part;
    const auto words = wordsOf(text);
    if (words.empty()) return Part::other;
    if (!hasBegun_) {
      hasBegun_ = isBeginning(words[0]);
      accepted_ = accepted_ || equalIgnoringCase(words[0], "NFRC");
      if (!hasBegun_) return accepted_ ? Part::other : Part::heading;
    }
    if (scalars_ < kScalars) {
      scalars_ += std::ranges::count_if(
          words, [](std::string_view word) { return !leadingNumber(word).empty(); });
      return Part::scalars;
    }
    if (isData_ || !leadingNumber(words[0]).empty()) {
      isData_ = true;
      return Part::data;
    }
    return isInfrared(words[0]) ? Part::infrared : Part::heading;
  }

  bool hasBegun() const { return hasBegun_; }

 private:
  static constexpr std::ptrdiff_t kScalars = 2;  // thickness and conductivity

  bool accepted_ = false;  ///< a line of the NFRC stands at the beginning
  bool hasBegun_ = false;
  std::ptrdiff_t scalars_ = 0;
  bool isData_ = false;
};

}  // namespace

SpectralText::SpectralText(std::string_view text) {
  while (!text.empty()) {
    const char first = text.front();
    std::size_t size = 1;
    if (first == '{') {
      const auto end = text.find('}');
      size = end == std::string_view::npos ? text.size() : end + 1;
    } else if (first != '\r' && first != '\n') {
      size = std::min(text.find_first_of(kPieceEnds), text.size());
    }
    const bool isCode = kPieceEnds.find(first) == std::string_view::npos;
    pieces_.push_back({std::string(text.substr(0, size)), isCode});
    text.remove_prefix(size);
  }
  findParts();
}

std::string SpectralText::text() const {
  std::string result;
  for (const Piece& piece : pieces_) result += piece.text;
  return result;
}

std::vector<SpectralText::Piece*> SpectralText::pieces(Part part) {
  std::vector<Piece*> result;
  for (Piece& piece : pieces_) {
    if (piece.part == part) result.push_back(&piece);
  }
  return result;
}

std::vector<SpectralText::Piece*> SpectralText::code() {
  std::vector<Piece*> result;
  for (Piece& piece : pieces_) {
    if (piece.isCode) result.push_back(&piece);
  }
  return result;
}

void SpectralText::findParts() {
  PartFinder finder;
  for (Piece& piece : pieces_) {
    if (piece.isCode) piece.part = finder.of(piece.text);
  }
  if (finder.hasBegun()) return;
  for (Piece& piece : pieces_) piece.part = Part::other;
}

}  // namespace orv::textfile
