// The About box.
#pragma once

#include <QDialog>

namespace orv::app {

class frmAbout : public QDialog {
  Q_OBJECT

 public:
  explicit frmAbout(QWidget* parent = nullptr);

 private:
  void showSystemInformation();
};

}  // namespace orv::app
