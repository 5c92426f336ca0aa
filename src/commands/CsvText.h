// Cells of comma-separated values.
#pragma once

#include <string>

namespace orv::commands {

/// A cell as it stands in a file: quoted where it holds a comma, a quote or a line end.
inline std::string csvCell(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace orv::commands
