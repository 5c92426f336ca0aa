// The differences of two sources beside the records.
#pragma once

#include "app/docks/compare/DifferencesTree.h"
#include "app/docks/list/ListDock.h"

namespace orv::app {

/// Closed until there is something to show.
class CompareDock : public ListDock {
  Q_OBJECT

 public:
  using Comparison = commands::compare::Comparison;

  explicit CompareDock(QWidget* parent = nullptr);

  /// Opens and shows what differs; `heading` names the two sources. The records of the pairs that
  /// are copyable can be copied to the right.
  void show(std::shared_ptr<const Comparison> comparison, const std::vector<std::size_t>& copyable,
            const QString& heading);
  /// Tells that records have changed since what is shown was found.
  void outdate();

 signals:
  void chosen(const commands::compare::Difference& difference);
  /// The records of these pairs are to be copied to the right.
  void copyWanted(const std::vector<std::size_t>& pairs);
  /// The sources are to be compared again.
  void refreshWanted();

 protected:
  void followFilter() override;

 private:
  CompareDock(DifferencesTree* tree, QWidget* parent);
  void addFilters(QToolBar& bar);
  void addCommands(QToolBar& bar);
  void fillFields();
  void followTicks();

  DifferencesTree* tree_;
  QComboBox* state_ = nullptr;
  QComboBox* field_ = nullptr;
  QLineEdit* search_ = nullptr;
  QString summaryText_;
  QAction* refresh_ = nullptr;
  QAction* tickAll_ = nullptr;
  QAction* copyRight_ = nullptr;
};

}  // namespace orv::app
