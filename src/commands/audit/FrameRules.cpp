// Rules on the quantities of a frame.
#include "commands/audit/FrameRules.h"

#include "commands/audit/Quantity.h"

namespace orv::commands::audit {

std::vector<Fault> uValueOfNoFrame(const FrameDataClass& frame) {
  constexpr Bounds kFromFoamToBareMetal{0.3, 15};
  return outside("u_value", frame.u_value(), kFromFoamToBareMetal, "W/(m²·K)", "a frame");
}

std::vector<Fault> widthOfNoFrame(const FrameDataClass& frame) {
  constexpr Bounds kProfile{0.005, 0.5};
  return outside("width", frame.width(), kProfile, "m", "a frame");
}

std::vector<Fault> frameMissingQuantities(const FrameDataClass& frame) {
  std::vector<Fault> faults;
  if (frame.u_value() == 0)
    faults.push_back({.field = "u_value", .message = "There is no U value"});
  if (frame.width() == 0) faults.push_back({.field = "width", .message = "There is no width"});
  return faults;
}

}  // namespace orv::commands::audit
