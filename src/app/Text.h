// Between the toolkit's texts and those of the system, which are UTF-8.
#pragma once

#include <QLocale>
#include <QString>
#include <string>

#include "model/ShownText.h"

namespace orv::app {

inline QString qt(const std::string& text) {
  return QString::fromStdString(text);
}
inline QString qt(const char* text) {
  return QString::fromUtf8(text);
}

/// Texts of unknown origin as they are shown; what is copied or written is left as it is.
inline QString shownText(const std::string& text) {
  return qt(orv::shown(text));
}
inline QString shownText(const QString& text) {
  return shownText(text.toStdString());
}

/// Such a text for a tool tip, in which nothing is markup.
inline QString toolTipText(const QString& text) {
  return QStringLiteral("<span style=\"white-space: pre-wrap\">%1</span>")
      .arg(shownText(text).toHtmlEscaped());
}

/// "1 record", "6,000 records".
inline QString counted(qlonglong number, const QString& thing) {
  const QString text = QLocale().toString(number) + ' ' + thing;
  return number == 1 ? text : text + 's';
}

}  // namespace orv::app
