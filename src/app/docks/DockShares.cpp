#include "app/docks/DockShares.h"

#include <QDockWidget>
#include <QEvent>
#include <QMainWindow>
#include <QTimer>
#include <utility>

namespace orv::app {

DockShares::DockShares(QMainWindow& window) : QObject(&window), window_(window) {
  window.installEventFilter(this);
}

void DockShares::add(QDockWidget& dock, Qt::Orientation orientation, int percent) {
  shares_.push_back({&dock, orientation, percent});
  connect(&dock, &QDockWidget::visibilityChanged, this, [this](bool visible) {
    if (visible) fitSoon();
  });
}

/// The edges of docks are parts of the window itself: what is pressed and released there drags.
bool DockShares::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::Resize:
      fitSoon();
      break;
    case QEvent::MouseButtonPress:
      for (Share& share : shares_) share.sizeAtPress = share.size();
      isPressed_ = true;
      break;
    case QEvent::MouseButtonRelease:
      for (Share& share : shares_) {
        if (isPressed_ && share.isShown() && share.size() != share.sizeAtPress) {
          share.isDragged = true;
        }
      }
      isPressed_ = false;
      break;
    default:
      break;
  }
  return false;
}

bool DockShares::Share::isShown() const {
  return dock->isVisible() && !dock->isFloating();
}

int DockShares::Share::size() const {
  return orientation == Qt::Horizontal ? dock->width() : dock->height();
}

/// When the window has placed its parts.
void DockShares::fitSoon() {
  if (std::exchange(isDue_, true)) return;
  QTimer::singleShot(0, this, &DockShares::fit);
}

void DockShares::fit() {
  isDue_ = false;
  for (const Share& share : shares_) {
    if (share.isDragged || !share.isShown()) continue;
    const bool isWidth = share.orientation == Qt::Horizontal;
    const int whole = isWidth ? window_.width() : window_.height();
    window_.resizeDocks({share.dock}, {whole * share.percent / 100}, share.orientation);
  }
}

}  // namespace orv::app

#include "moc_DockShares.cpp"
