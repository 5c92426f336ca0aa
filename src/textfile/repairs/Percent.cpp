#include <algorithm>

#include "textfile/Number.h"
#include "textfile/repairs/Repair.h"

namespace orv::textfile {

namespace {

constexpr std::size_t kColumns = 4;  // what stands behind them is passed over
constexpr double kWhole = 100;       // percent
/// No fraction is as large as this, however badly it was measured.
constexpr double kTooLarge = 1.5;

std::string_view withoutSign(std::string_view word) {
  if (word.ends_with('%')) word.remove_suffix(1);
  return word;
}

class Percent : public Repair {
 public:
  std::string mend(SpectralText& text) const override {
    if (!isPercent(text)) return {};
    for (SpectralText::Piece* piece : text.pieces(SpectralText::Part::data)) {
      std::size_t column = 0;
      changeWords(piece->text, [&](std::string_view word) {
        return column++ == 0 ? std::string(word) : fraction(word);
      });
    }
    return "percent";
  }

 private:
  /// A sign says so, on the numbers or above them; else values that can be nothing else.
  static bool isPercent(SpectralText& text) {
    const auto hasSign = [](const SpectralText::Piece* piece) {
      return piece->text.find('%') != std::string::npos;
    };
    if (std::ranges::any_of(text.pieces(SpectralText::Part::heading), hasSign)) return true;
    const auto data = text.pieces(SpectralText::Part::data);
    return std::ranges::any_of(data, hasSign) || isInRange(data);
  }

  static bool isInRange(const std::vector<SpectralText::Piece*>& data) {
    double largest = 0;
    for (const SpectralText::Piece* piece : data) {
      const auto words = wordsOf(piece->text);
      for (std::size_t i = 1; i < std::min(words.size(), kColumns); ++i) {
        largest = std::max(largest, parseDouble(words[i]).value_or(0));
      }
    }
    return largest > kTooLarge && largest <= kWhole;
  }

  static std::string fraction(std::string_view word) {
    const auto value = parseDouble(withoutSign(word));
    return value ? formatNumber(static_cast<float>(*value / kWhole))
                 : std::string(withoutSign(word));
  }
};

}  // namespace

RepairPtr makePercent() {
  return std::make_unique<Percent>();
}

}  // namespace orv::textfile
