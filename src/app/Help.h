// The texts that explain the parts of a window.
#pragma once

#include <QAction>
#include <QString>
#include <QWidget>

namespace orv::app {

/// Explains a widget: by a tool tip and by What's This.
inline void explain(QWidget* widget, const QString& help) {
  widget->setToolTip(help);
  widget->setWhatsThis(help);
}

/// Explains an action, besides in the status bar while the pointer is on it. The tool tip names
/// the keys.
inline void explain(QAction* action, const QString& help) {
  const QString keys = action->shortcut().toString(QKeySequence::NativeText);
  action->setToolTip(keys.isEmpty() ? help : QStringLiteral("%1 (%2)").arg(help, keys));
  action->setStatusTip(help);
  action->setWhatsThis(help);
}

}  // namespace orv::app
