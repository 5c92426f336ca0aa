// The differences of two sources beside the records.
#pragma once

#include <QDockWidget>

#include "app/docks/compare/DifferencesTree.h"

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QToolBar;

namespace orv::app {

/// Closed until there is something to show.
class CompareDock : public QDockWidget {
  Q_OBJECT

 public:
  using Comparison = commands::compare::Comparison;

  explicit CompareDock(QWidget* parent = nullptr);

  /// Opens and shows what differs; `heading` names the two sources. The records of the pairs that
  /// are copyable can be copied to the right.
  void show(std::shared_ptr<const Comparison> comparison, const std::vector<std::size_t>& copyable,
            const QString& heading);

 signals:
  void chosen(const commands::compare::Difference& difference);
  /// The records of these pairs are to be copied to the right.
  void copyWanted(const std::vector<std::size_t>& pairs);
  /// The sources are to be compared again.
  void refreshWanted();

 private:
  QToolBar* makeBar(const QString& name, const QString& help);
  void addFilters(QToolBar& bar);
  void addActions(QToolBar& bar);
  void fillFields();
  void followFilter();
  void followTicks();
  void copy() const;

  QComboBox* state_;
  QComboBox* field_;
  QLineEdit* search_;
  DifferencesTree* tree_;
  QLabel* summary_;
  QString summaryText_;
  QAction* refresh_;
  QAction* tickAll_;
  QAction* copyRight_;
};

}  // namespace orv::app
