// What stands behind values that differ.
#pragma once

#include <QColor>
#include <QPalette>

namespace orv::app {

/// A colour that leaves the text its contrast.
inline QColor markColour(const QPalette& palette) {
  constexpr int kShare = 30;  // percent
  const QColor base = palette.color(QPalette::Base);
  const QColor mark(0xe6, 0x9f, 0x00);
  const auto mixed = [](int a, int b) { return (a * (100 - kShare) + b * kShare) / 100; };
  return {mixed(base.red(), mark.red()), mixed(base.green(), mark.green()),
          mixed(base.blue(), mark.blue())};
}

}  // namespace orv::app
