// How data are displayed and copied, for this run.
#pragma once

#include <QDialog>

#include "app/dialogs/DisplayOptions.h"

class QCheckBox;
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
  QCheckBox* copiesAsShown_;
  QComboBox* plotUnit_;
  QComboBox* theme_;
  QCheckBox* integrates_;
  QComboBox* standard_;
};

}  // namespace orv::app
