#include "app/window/WindowGeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

#include "app/window/Twips.h"

namespace orv::app {

namespace {

constexpr const char* kSection = "Settings";

void read(const QSettings& settings, const char* key, int& value) {
  bool isNumber = false;
  const int stored = settings.value(key).toInt(&isNumber);
  if (isNumber) value = stored;
}

}  // namespace

WindowGeometry WindowGeometry::load(QSettings& settings) {
  WindowGeometry geometry;
  settings.beginGroup(kSection);
  read(settings, "MainLeft", geometry.left);
  read(settings, "MainTop", geometry.top);
  read(settings, "MainWidth", geometry.width);
  read(settings, "MainHeight", geometry.height);
  settings.endGroup();
  return geometry;
}

void WindowGeometry::save(QSettings& settings) const {
  settings.beginGroup(kSection);
  settings.setValue("MainLeft", left);
  settings.setValue("MainTop", top);
  settings.setValue("MainWidth", width);
  settings.setValue("MainHeight", height);
  settings.endGroup();
}

WindowGeometry WindowGeometry::of(const QWidget& window) {
  const int x = window.logicalDpiX();
  const int y = window.logicalDpiY();
  return {twipsFromPixels(window.x(), x), twipsFromPixels(window.y(), y),
          twipsFromPixels(window.width(), x), twipsFromPixels(window.height(), y)};
}

void WindowGeometry::applyTo(QWidget& window) const {
  const int x = window.logicalDpiX();
  const int y = window.logicalDpiY();
  window.resize(pixelsFromTwips(width, x), pixelsFromTwips(height, y));
  const QPoint place(pixelsFromTwips(left, x), pixelsFromTwips(top, y));
  if (QGuiApplication::screenAt(place) != nullptr) {
    window.move(place);
    return;
  }
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  window.move(std::clamp(place.x(), screen.left(),
                         std::max(screen.left(), screen.right() - window.width())),
              std::clamp(place.y(), screen.top(),
                         std::max(screen.top(), screen.bottom() - window.height())));
}

}  // namespace orv::app
