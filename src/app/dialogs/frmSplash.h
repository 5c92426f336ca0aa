// The window that is shown while the program starts.
#pragma once

#include <QWidget>

namespace orv::app {

class frmSplash : public QWidget {
  Q_OBJECT

 public:
  frmSplash();

  /// Shows itself amid the screen and paints itself at once.
  void open();
};

}  // namespace orv::app
