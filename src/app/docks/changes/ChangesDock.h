// The changes that are not saved yet, beside the records.
#pragma once

#include <vector>

#include "app/docks/list/ListDock.h"
#include "commands/edit/Change.h"

class QTreeWidgetItem;

namespace orv::app {

class RecordEdits;

/// A line a field: of which record, what it was and what it becomes, and what stands against that.
/// Below it what the changes make untrue elsewhere. Closed until there is a change.
class ChangesDock : public ListDock {
  Q_OBJECT

 public:
  explicit ChangesDock(QWidget* parent = nullptr);

  /// Offers actions above the list.
  void offer(const QList<QAction*>& actions);
  /// Shows the changes of a record set, and follows them; null shows none.
  void follow(RecordEdits* edits);

 signals:
  /// A change was clicked on, or moved to with the keyboard.
  void chosen(std::int32_t record);

 private:
  ChangesDock(ListTree* list, QWidget* parent);
  void fill();
  void fillLine(QTreeWidgetItem& line, const commands::edit::Change& change);
  void tellRefusals();
  void choose(const QTreeWidgetItem* line);
  void dropSelected();

  RecordEdits* edits_ = nullptr;
  std::vector<commands::edit::Change> changes_;  ///< in the order of the lines
  ListTree* list_;
  QToolBar* bar_;
  QAction* drop_;
};

}  // namespace orv::app
