// How much of the window its docks take.
#pragma once

#include <QObject>
#include <vector>

class QDockWidget;
class QMainWindow;

namespace orv::app {

/// Gives each dock a share of the window, however it was opened and whatever it holds, until the
/// user drags its edge: from then on it keeps the size that he has given it.
class DockShares : public QObject {
  Q_OBJECT

 public:
  explicit DockShares(QMainWindow& window);

  /// Of the window's width with `Qt::Horizontal`, of its height with `Qt::Vertical`.
  void add(QDockWidget& dock, Qt::Orientation orientation, int percent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Share {
    QDockWidget* dock;
    Qt::Orientation orientation;
    int percent;
    bool isDragged = false;
    int sizeAtPress = 0;

    bool isShown() const;
    int size() const;
  };

  void fitSoon();
  void fit();

  QMainWindow& window_;
  std::vector<Share> shares_;
  bool isDue_ = false;
  bool isPressed_ = false;
};

}  // namespace orv::app
