#include "textfile/repairs/Repair.h"

namespace orv::textfile {

namespace {

/// The word with the exponent that it means; other words as they are.
std::string mended(std::string_view word) {
  const std::string result = withExponentE(word);
  return result.empty() ? std::string(word) : result;
}

class Exponents : public Repair {
 public:
  std::string mend(SpectralText& text) const override {
    bool found = false;
    for (const auto part : {SpectralText::Part::scalars, SpectralText::Part::data}) {
      for (SpectralText::Piece* piece : text.pieces(part)) {
        found = changeWords(piece->text, mended) || found;
      }
    }
    return found ? "exponents with D" : "";
  }
};

}  // namespace

RepairPtr makeExponents() {
  return std::make_unique<Exponents>();
}

}  // namespace orv::textfile
