#include <array>

#include "textfile/repairs/Repair.h"

namespace orv::textfile {

namespace {

/// The no-break space and its narrow kin.
constexpr std::array<std::string_view, 3> kSpaces = {"\u00A0", "\u202F", "\u2007"};

class NoBreakSpaces : public Repair {
 public:
  std::string mend(SpectralText& text) const override {
    bool found = false;
    for (SpectralText::Piece* piece : text.code()) {
      for (const std::string_view space : kSpaces) {
        for (auto at = piece->text.find(space); at != std::string::npos;
             at = piece->text.find(space, at)) {
          piece->text.replace(at, space.size(), 1, ' ');
          found = true;
        }
      }
    }
    return found ? "no-break spaces are read as blanks" : "";
  }
};

}  // namespace

RepairPtr makeNoBreakSpaces() {
  return std::make_unique<NoBreakSpaces>();
}

}  // namespace orv::textfile
