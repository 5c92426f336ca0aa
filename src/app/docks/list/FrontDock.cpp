#include "app/docks/list/FrontDock.h"

#include <QAction>
#include <QDockWidget>
#include <QEvent>

namespace orv::app {

FrontDock::FrontDock(QDockWidget& dock) : QObject(&dock) {
  dock.installEventFilter(this);
  connect(&dock, &QDockWidget::visibilityChanged, this, [this](bool seen) { isInFront_ = seen; });
  connect(dock.toggleViewAction(), &QAction::triggered, &dock, [this, &dock](bool isOpened) {
    if (!isOpened && wasInFront_) return;
    dock.show();
    dock.raise();
  });
}

bool FrontDock::eventFilter(QObject* /*dock*/, QEvent* event) {
  if (event->type() == QEvent::Close) wasInFront_ = isInFront_;
  return false;
}

}  // namespace orv::app

#include "moc_FrontDock.cpp"
