// Between the toolkit's texts and those of the system, which are UTF-8.
#pragma once

#include <QString>
#include <string>

namespace orv::app {

inline QString qt(const std::string& text) {
  return QString::fromStdString(text);
}
inline QString qt(const char* text) {
  return QString::fromUtf8(text);
}

}  // namespace orv::app
