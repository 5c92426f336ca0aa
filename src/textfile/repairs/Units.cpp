#include <fmt/format.h>

#include <algorithm>

#include "model/Text.h"
#include "textfile/repairs/Repair.h"

namespace orv::textfile {

namespace {

/// "mm", "W/(m·K)", "W/mK", "Btu/hft°F": what may stand behind a thickness or a conductivity.
bool isScalarUnit(std::string_view word) {
  const std::string unit = lowerCase(word);
  return unit == "mm" || unit == "in" || unit == "inch" || unit.starts_with("w/") ||
         unit.starts_with("wm") || unit.starts_with("btu");
}

class Units : public Repair {
 public:
  std::string mend(SpectralText& text) const override {
    std::string done;
    for (SpectralText::Piece* piece : text.pieces(SpectralText::Part::scalars)) {
      changeWords(piece->text, [&](std::string_view word) {
        const std::string mended = mendWord(word);
        if (mended != word) {
          done += fmt::format("{}\"{}\" is {}", done.empty() ? "" : ", ", word,
                              mended.empty() ? "left out" : "read as " + mended);
        }
        return mended;
      });
    }
    return done;
  }

 private:
  static std::string mendWord(std::string_view word) {
    if (const auto name = wavelengthUnitName(word); !name.empty()) return std::string(name);
    const auto number = numberOf(word);
    return isScalarUnit(word.substr(number.size())) ? std::string(number) : std::string(word);
  }

  /// The digits, points and commas that a word begins with.
  static std::string_view numberOf(std::string_view word) {
    return word.substr(0, std::min(word.find_first_not_of("+-0123456789.,"), word.size()));
  }
};

}  // namespace

RepairPtr makeUnits() {
  return std::make_unique<Units>();
}

}  // namespace orv::textfile
