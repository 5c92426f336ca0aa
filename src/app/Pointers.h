// The pointer that tells the user to wait.
#pragma once

#include <QGuiApplication>

namespace orv::app {

/// Shows a pointer over all windows for as long as it lives; the last one made counts.
class PointerScope {
 public:
  explicit PointerScope(Qt::CursorShape shape) { QGuiApplication::setOverrideCursor(shape); }
  ~PointerScope() { QGuiApplication::restoreOverrideCursor(); }
  PointerScope(const PointerScope&) = delete;
  PointerScope& operator=(const PointerScope&) = delete;
};

/// The hourglass, for the time of a command.
struct BusyPointer : PointerScope {
  BusyPointer() : PointerScope(Qt::WaitCursor) {}
};

/// The ordinary pointer, for a question amid a command.
struct OrdinaryPointer : PointerScope {
  OrdinaryPointer() : PointerScope(Qt::ArrowCursor) {}
};

}  // namespace orv::app
