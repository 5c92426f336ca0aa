// How data are displayed, for this run.
#pragma once

#include <QDialog>

#include "app/dialogs/DisplayOptions.h"

class QComboBox;
class QSpinBox;

namespace orv::app {

class frmOptions : public QDialog {
  Q_OBJECT

 public:
  explicit frmOptions(const DisplayOptions& options, QWidget* parent = nullptr);

  DisplayOptions options() const;

 private:
  QSpinBox* digits_;
  QComboBox* plotUnit_;
  QComboBox* theme_;
};

}  // namespace orv::app
