// Finding and replacing in a column.
#pragma once

#include <QTimer>

#include "app/dialogs/PlanDialog.h"

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace orv::app {

class RecordGrid;

/// Asks in which column of a grid which text is replaced by which, and shows all fields that would
/// change as that is typed.
class ReplaceDialog : public PlanDialog {
  Q_OBJECT

 public:
  /// The records of the grid are edited; `column` is proposed where it can be.
  ReplaceDialog(RecordGrid& grid, int column, QWidget* parent);

  void accept() override;

 private:
  void makeForm(int column);
  void preview();
  /// What becomes of the text of a field.
  QString replaced(const QString& text) const;

  RecordGrid& grid_;
  QComboBox* column_;
  QLineEdit* find_;
  QLineEdit* by_;
  QCheckBox* whole_;
  QCheckBox* case_;
  QCheckBox* selected_;
  QTimer rest_;
};

}  // namespace orv::app
