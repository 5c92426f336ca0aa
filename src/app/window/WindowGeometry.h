// The place of the main window, as the user's settings keep it.
#pragma once

#include <QSettings>
#include <QWidget>

namespace orv::app {

/// Measures in twips. The size is that of the window without its frame.
struct WindowGeometry {
  int left = 1000;
  int top = 1000;
  int width = 6500;
  int height = 6500;

  /// What the settings do not have, or not as a number, is as above.
  static WindowGeometry load(QSettings& settings);
  void save(QSettings& settings) const;

  static WindowGeometry of(const QWidget& window);
  /// A place that no screen shows any more is brought back to the nearest screen.
  void applyTo(QWidget& window) const;
};

}  // namespace orv::app
