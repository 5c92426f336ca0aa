#pragma once

#include <fmt/format.h>

#include <string>

namespace orv::commands {

/// A number with as many digits as tell it from its neighbours. Many doubles come from columns of
/// single precision: what such a column holds as 0.84 is written so, not as 0.8399999737739563.
inline std::string numberText(double value) {
  const auto single = static_cast<float>(value);
  return single == value ? fmt::format("{}", single) : fmt::format("{}", value);
}

}  // namespace orv::commands
