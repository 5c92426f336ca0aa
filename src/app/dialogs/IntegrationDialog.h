// What computing integrated values would change.
#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "commands/IntegrateRecords.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QTableWidget;

namespace orv::app {

/// Shows for each selected pane and angle the values that the database has and those that it would
/// get, by the standard and for the panes that the user chooses. Nothing is stored by it.
class IntegrationDialog : public QDialog {
  Q_OBJECT

 public:
  using Rows = std::vector<commands::IntegratedRow>;
  /// What storing with these options would do; none when the user ended the work.
  using Rehearsal = std::function<std::optional<Rows>(const commands::IntegrationOptions&)>;

  IntegrationDialog(Rehearsal rehearse, optics::Standard standard, QWidget* parent = nullptr);

  /// What the user has chosen.
  commands::IntegrationOptions options() const;
  /// Shows what these would do. False when the user ended the work.
  bool rehearse();

 private:
  QWidget* makeChoices(optics::Standard standard);
  QTableWidget* makeTable();
  void fillRow(int row, const commands::IntegratedRow& values);
  void showSummary(const Rows& rows);

  Rehearsal rehearsal_;
  QComboBox* standard_;
  QCheckBox* onlyMissing_;
  QCheckBox* frozenToo_;
  QTableWidget* table_;
  QLabel* summary_;
  QPushButton* store_;
};

}  // namespace orv::app
