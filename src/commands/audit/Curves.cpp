#include "commands/audit/Curves.h"

#include "errors/Counted.h"

namespace orv::commands::audit {

std::string place(double nanometers) {
  constexpr double kFar = 5000;
  constexpr double kPerMicron = 1000;
  return nanometers > kFar ? fmt::format("{:g} µm", nanometers / kPerMicron)
                           : fmt::format("{:g} nm", nanometers);
}

void WorstPoint::add(double wavelength, double value, double badness) {
  if (count_++ > 0 && badness <= badness_) return;
  wavelength_ = wavelength;
  value_ = value;
  badness_ = badness;
}

std::string WorstPoint::where() const {
  const std::string text = " at " + place(wavelength_);
  if (count_ == 1) return text;
  return text + ", and at " + counted(count_ - 1, "more wavelength");
}

}  // namespace orv::commands::audit
