// Cells of comma-separated values, and of tables with other separators.
#pragma once

#include <string>

namespace orv::commands {

/// A cell as it stands in a file: quoted where it holds the separator, a quote or a line end.
inline std::string separatedCell(const std::string& text, char separator) {
  if (text.find_first_of(std::string("\"\r\n") + separator) == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

inline std::string csvCell(const std::string& text) {
  return separatedCell(text, ',');
}

}  // namespace orv::commands
