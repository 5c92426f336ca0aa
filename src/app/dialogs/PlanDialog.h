// Changes that are shown before they are made.
#pragma once

#include <QDialog>

#include "app/grid/ChangePlan.h"

class QDialogButtonBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace orv::app {

class PlanList;

/// A list of changes, of which the user chooses those that are made; how many, and how many are
/// refused, stands below it. Nothing is changed by it.
class PlanDialog : public QDialog {
  Q_OBJECT

 public:
  /// `verb` stands on the button that makes the changes: "&Paste".
  PlanDialog(const QString& title, const QString& verb, const QString& heading, QWidget* parent);

  void show(ChangePlan plan);
  /// Shows itself; the changes that are chosen, none where the user does not want to.
  std::vector<commands::edit::TypedValue> choose();

 protected:
  /// What derived dialogs ask is above the list.
  QVBoxLayout& top() { return *top_; }

 private:
  void follow();

  QString verb_;
  QVBoxLayout* top_;
  PlanList* list_;
  QLabel* summary_;
  QPushButton* make_;
};

}  // namespace orv::app
