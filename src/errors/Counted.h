// Numbers of things in messages.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orv {

/// "1 record", "2 records"; where `one` takes more than an "s", `several` says it.
inline std::string counted(std::size_t count, std::string_view one, std::string_view several = {}) {
  std::string text = std::to_string(count) + " ";
  if (count == 1) return text.append(one);
  return several.empty() ? text.append(one).append("s") : text.append(several);
}

}  // namespace orv
