// The curves of a spectrum, for rules that look at each.
#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "commands/audit/DataSet.h"
#include "commands/audit/Finding.h"

namespace orv::commands::audit {

struct NamedCurve {
  Curve curve;
  const char* name;
};

inline constexpr std::array<NamedCurve, 4> kNamedCurves{
    NamedCurve{Curve::Tf, "Tf"}, NamedCurve{Curve::Tb, "Tb"}, NamedCurve{Curve::Rf, "Rf"},
    NamedCurve{Curve::Rb, "Rb"}};

/// "0.1235".
inline std::string shortNumber(double value) {
  return fmt::format("{:.4g}", value);
}
/// "655 nm"; beyond 5 µm "10 µm".
std::string place(double nanometers);

/// Faults of one kind at several wavelengths of a curve, of which the worst stands for all.
class WorstPoint {
 public:
  void add(double wavelength, double value, double badness);

  bool isThere() const { return count_ > 0; }
  double wavelength() const { return wavelength_; }
  double value() const { return value_; }
  /// " at 655 nm"; of several " at 655 nm, and at 3 more wavelengths".
  std::string where() const;

 private:
  std::size_t count_ = 0;
  double wavelength_ = 0;
  double value_ = 0;
  double badness_ = 0;
};

/// Runs `look` on each curve, but for one that is the same as another before it. `look` gives the
/// worst of its faults, and `tell` makes a fault of it.
template <class Look, class Tell>
std::vector<Fault> eachCurve(const DataSet& set, Look look, Tell tell) {
  std::vector<Fault> faults;
  for (const NamedCurve& named : kNamedCurves) {
    const auto& values = set.spectrum[named.curve];
    const auto isSame = [&](const NamedCurve& other) {
      return set.spectrum[other.curve] == values;
    };
    if (std::ranges::find_if(kNamedCurves, isSame)->curve != named.curve) continue;
    const WorstPoint worst = look(values);
    if (!worst.isThere()) continue;
    Fault fault = tell(worst, named.name);
    fault.field = named.name;
    fault.wavelength = worst.wavelength();
    faults.push_back(std::move(fault));
  }
  return faults;
}

}  // namespace orv::commands::audit
