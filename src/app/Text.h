// Between the toolkit's texts and those of the system, which are UTF-8.
#pragma once

#include <QLocale>
#include <QString>
#include <string>

namespace orv::app {

inline QString qt(const std::string& text) {
  return QString::fromStdString(text);
}
inline QString qt(const char* text) {
  return QString::fromUtf8(text);
}

/// "1 record", "6,000 records".
inline QString counted(qlonglong number, const QString& thing) {
  const QString text = QLocale().toString(number) + ' ' + thing;
  return number == 1 ? text : text + 's';
}

}  // namespace orv::app
