#include <algorithm>
#include <utility>

#include "textfile/Number.h"
#include "textfile/repairs/Repair.h"

namespace orv::textfile {

namespace {

/// Turns the lines round. A "*" means the line before it, and a line of two columns takes the
/// reflectances from there: with them the order stays.
class DescendingWavelengths : public Repair {
 public:
  std::string mend(SpectralText& text) const override {
    const auto data = text.pieces(SpectralText::Part::data);
    if (data.size() < 2 || !descends(data)) return {};
    for (std::size_t i = 0; i < data.size() / 2; ++i) {
      std::swap(data[i]->text, data[data.size() - 1 - i]->text);
    }
    return "descending wavelengths are turned round";
  }

 private:
  static bool descends(const std::vector<SpectralText::Piece*>& data) {
    constexpr std::size_t kFewestColumns = 3;
    std::optional<double> before;
    for (const SpectralText::Piece* piece : data) {
      const auto words = wordsOf(piece->text);
      const auto wavelength = parseDouble(words[0]);
      const bool dependsOnOthers =
          words.size() < kFewestColumns || std::ranges::find(words, "*") != words.end();
      if (!wavelength || dependsOnOthers || (before && *wavelength >= *before)) return false;
      before = wavelength;
    }
    return true;
  }
};

}  // namespace

RepairPtr makeDescendingWavelengths() {
  return std::make_unique<DescendingWavelengths>();
}

}  // namespace orv::textfile
