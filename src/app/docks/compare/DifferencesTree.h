#pragma once

#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "app/docks/list/ListTree.h"
#include "commands/compare/Compare.h"

namespace orv::app {

/// What of the differences is shown.
struct DifferencesFilter {
  std::optional<commands::compare::State> state = {};
  QString field = {};  ///< empty for all
  QString text = {};   ///< a part of a cell; empty for all
};

/// The differences of two sources: a line a record with the sign and the colour of what became of
/// it, below it a line a field. Records that can be copied have a box to be ticked.
class DifferencesTree : public ListTree {
  Q_OBJECT

 public:
  using Comparison = commands::compare::Comparison;

  explicit DifferencesTree(QWidget* parent = nullptr);

  /// Shows a comparison, of which the records of these pairs can be copied.
  void show(std::shared_ptr<const Comparison> comparison, const std::vector<std::size_t>& copyable);
  void filter(const DifferencesFilter& filter);

  /// The fields that differ somewhere, in the order in which they come.
  QStringList fields() const;
  /// How many records are shown.
  int shownCount() const { return topLevelItemCount(); }
  /// The pairs whose boxes are ticked, ascending.
  std::vector<std::size_t> ticked() const { return {ticked_.begin(), ticked_.end()}; }
  /// Ticks all boxes that are shown, or none of them.
  void tickShown(bool isTicked);

 signals:
  /// A line was clicked on, or moved to with the keyboard.
  void chosen(const commands::compare::Difference& difference);
  void tickedChanged();

 protected:
  QStringList headings() const override;
  QStringList rowOf(const QTreeWidgetItem& line) const override;
  void changeEvent(QEvent* event) override;

 private:
  void fill();
  void add(std::size_t first, std::size_t end);
  QTreeWidgetItem* recordItem(std::size_t pair);
  void choose(const QTreeWidgetItem* item);
  void follow(const QTreeWidgetItem* item);
  bool isShown(const commands::compare::Difference& difference, const QStringList& cells) const;
  QStringList cellsOf(const commands::compare::Difference& difference) const;

  std::shared_ptr<const Comparison> comparison_;
  std::set<std::size_t> copyable_;
  std::set<std::size_t> ticked_;
  DifferencesFilter filter_;
};

}  // namespace orv::app
