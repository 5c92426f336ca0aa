// Docks that lie over each other.
#pragma once

#include <QObject>

class QDockWidget;

namespace orv::app {

/// Has the menu entry of a dock bring it to the front where another lies over it, in place of closing
/// what is not seen.
class FrontDock : public QObject {
  Q_OBJECT

 public:
  /// The dock owns it.
  explicit FrontDock(QDockWidget& dock);

  bool eventFilter(QObject* dock, QEvent* event) override;

 private:
  bool isInFront_ = false;
  bool wasInFront_ = false;  ///< when it was closed last
};

}  // namespace orv::app
