// The groups, suppliers and frame types of a database, beside its records.
#pragma once

#include <vector>

#include "app/docks/list/ListDock.h"
#include "commands/edit/LookupRecords.h"

namespace orv::app {

/// A line a name, with how many records have it. What is to be done to the selected names is asked
/// for by signals.
class LookupsDock : public ListDock {
  Q_OBJECT

 public:
  using Records = std::vector<commands::edit::LookupRecord>;

  explicit LookupsDock(QWidget* parent = nullptr);

  /// Of which names it is.
  commands::edit::EditSet set() const;
  /// Shows all names of the set; `mayChange`: they can be renamed, merged and deleted. Those that
  /// were selected stay selected.
  void fill(Records records, bool mayChange);
  /// Shows why there are none.
  void tellNone(const QString& why);
  /// In the order in which they are shown.
  Records selected() const;

 signals:
  /// The names are wanted: the dock was opened, or another set was chosen.
  void wanted();
  void renameWanted();
  void mergeWanted();
  void deleteWanted();

 protected:
  void followFilter() override { emit wanted(); }

 private:
  LookupsDock(ListTree* list, QWidget* parent);
  void addTools();
  void followSelection();

  Records records_;  ///< in the order of their numbers
  bool mayChange_ = false;
  commands::edit::EditSet filled_ = commands::edit::EditSet::groups;  ///< of the lines
  ListTree* list_;
  QComboBox* set_ = nullptr;
  QAction* rename_ = nullptr;
  QAction* merge_ = nullptr;
  QAction* delete_ = nullptr;
};

}  // namespace orv::app
