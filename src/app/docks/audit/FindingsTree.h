#pragma once

#include <QSet>
#include <vector>

#include "app/docks/list/ListTree.h"
#include "commands/audit/Finding.h"

namespace orv::app {

using Findings = std::vector<commands::audit::Finding>;

/// What of the findings is shown.
struct FindingsFilter {
  commands::audit::Severity least = commands::audit::Severity::note;
  QString text = {};           ///< a part of a cell; empty for all
  QSet<QString> leftOut = {};  ///< rules
};

/// The findings of an audit, the worst rules first: a line a rule, below it its findings.
class FindingsTree : public ListTree {
  Q_OBJECT

 public:
  explicit FindingsTree(QWidget* parent = nullptr);

  void show(Findings findings);
  void filter(const FindingsFilter& filter);

  /// How many findings are shown.
  int shownCount() const { return shown_; }
  /// The rule of the current line; empty for none.
  QString currentRule() const;

 signals:
  /// A finding was clicked on, or moved to with the keyboard.
  void chosen(const commands::audit::Finding& finding);

 protected:
  QStringList headings() const override;
  QStringList rowOf(const QTreeWidgetItem& line) const override;

 private:
  void fill();
  void choose(const QTreeWidgetItem* item);
  QTreeWidgetItem* ruleItem(std::string_view rule);
  bool isShown(const QTreeWidgetItem& item) const;
  const commands::audit::Finding* findingOf(const QTreeWidgetItem* item) const;

  Findings findings_;
  FindingsFilter filter_;
  int shown_ = 0;
};

}  // namespace orv::app
