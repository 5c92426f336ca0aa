// Qt's texts in what tests demand, and in what they say where they fail.
#pragma once

#include <gmock/gmock.h>

#include <QString>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}

namespace orv::test {

MATCHER_P(Contains, part, "") {
  return arg.contains(part);
}
MATCHER_P(Begins, part, "") {
  return arg.startsWith(part);
}

}  // namespace orv::test
