#include <fmt/format.h>

#include "errors/Counted.h"
#include "textfile/repairs/Repair.h"

namespace orv::textfile {

namespace {

class Headings : public Repair {
 public:
  std::string mend(SpectralText& text) const override {
    int lines = 0;
    for (SpectralText::Piece* piece : text.pieces(SpectralText::Part::heading)) {
      piece->text.clear();
      ++lines;
    }
    for (SpectralText::Piece* piece : text.pieces(SpectralText::Part::data)) {
      const auto words = wordsOf(piece->text);
      if (words[0].front() != '#') continue;
      piece->text.clear();
      ++lines;
    }
    if (lines == 0) return {};
    return counted(lines, "line") + " of words left out";
  }
};

}  // namespace

RepairPtr makeHeadings() {
  return std::make_unique<Headings>();
}

}  // namespace orv::textfile
