#include <algorithm>

#include "textfile/Number.h"
#include "textfile/repairs/Repair.h"

namespace orv::textfile {

namespace {

/// "1.0E-3" for "1.0D-3"; other words as they are.
std::string withE(std::string_view word) {
  std::string result(word);
  const auto letter = result.find_first_of("dD");
  if (letter == std::string::npos) return result;
  result[letter] = 'E';
  return parseDouble(result) ? result : std::string(word);
}

class Exponents : public Repair {
 public:
  std::string mend(SpectralText& text) const override {
    bool found = false;
    for (const auto part : {SpectralText::Part::scalars, SpectralText::Part::data}) {
      for (SpectralText::Piece* piece : text.pieces(part)) {
        found = changeWords(piece->text, withE) || found;
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
