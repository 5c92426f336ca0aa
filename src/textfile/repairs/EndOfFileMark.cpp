#include "textfile/repairs/Repair.h"

namespace orv::textfile {

namespace {

class EndOfFileMark : public Repair {
 public:
  std::string mend(SpectralText& text) const override {
    bool found = false;
    for (SpectralText::Piece* piece : text.code()) {
      const auto mark = piece->text.find('\x1A');
      found = found || mark != std::string::npos;
      if (found) piece->text.erase(mark == std::string::npos ? 0 : mark);
    }
    return found ? "what follows the end-of-file character is left out" : "";
  }
};

}  // namespace

RepairPtr makeEndOfFileMark() {
  return std::make_unique<EndOfFileMark>();
}

}  // namespace orv::textfile
