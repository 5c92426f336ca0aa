#pragma once

#include <QSet>
#include <QTreeWidget>
#include <vector>

#include "app/dialogs/TableExport.h"
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
class FindingsTree : public QTreeWidget {
  Q_OBJECT

 public:
  explicit FindingsTree(QWidget* parent = nullptr);

  void show(Findings findings);
  void filter(const FindingsFilter& filter);

  /// How many findings are shown.
  int shownCount() const { return shown_; }
  /// The findings that are shown, or that are selected by themselves or with their rule, with
  /// headings.
  TableRows shownRows() const { return rows(false); }
  TableRows selectedRows() const { return rows(true); }
  /// The rule of the current line; empty for none.
  QString currentRule() const;

 signals:
  /// A finding was clicked on, or moved to with the keyboard.
  void chosen(const commands::audit::Finding& finding);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void fill();
  void choose(const QTreeWidgetItem* item);
  QTreeWidgetItem* ruleItem(std::string_view rule);
  bool isShown(const QTreeWidgetItem& item) const;
  TableRows rows(bool onlySelected) const;
  const commands::audit::Finding* findingOf(const QTreeWidgetItem* item) const;

  Findings findings_;
  FindingsFilter filter_;
  int shown_ = 0;
};

}  // namespace orv::app
