// A list of changes before they are made.
#pragma once

#include <QTreeWidget>

#include "app/grid/ChangePlan.h"

namespace orv::app {

/// A line a field with a box, ticked where it is to be changed: its record, what it was and what it
/// becomes. One that is refused has the reason and cannot be ticked.
class PlanList : public QTreeWidget {
  Q_OBJECT

 public:
  explicit PlanList(QWidget* parent = nullptr);

  void show(ChangePlan plan);
  std::vector<commands::edit::TypedValue> ticked() const;
  int refusedCount() const;

 signals:
  void tickedChanged();

 private:
  ChangePlan plan_;  ///< in the order of the lines
};

}  // namespace orv::app
