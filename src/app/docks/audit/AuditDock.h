// The findings of an audit beside the records.
#pragma once

#include <QStringList>

#include "app/docks/audit/FindingsTree.h"
#include "app/docks/list/ListDock.h"

namespace orv::app {

/// Closed until there is something to show.
class AuditDock : public ListDock {
  Q_OBJECT

 public:
  explicit AuditDock(QWidget* parent = nullptr);

  /// Opens and shows what was found; `summary` says of what, and of how many records.
  void show(Findings findings, const QString& summary);

  /// The rules of which nothing is shown.
  QStringList leftOut() const;
  void setLeftOut(const QStringList& rules);

 signals:
  void chosen(const commands::audit::Finding& finding);
  void leftOutChanged(const QStringList& rules);

 protected:
  void followFilter() override;

 private:
  AuditDock(FindingsTree* tree, QWidget* parent);
  void addTools();
  void leaveOut(const QString& rule);

  FindingsFilter filter_;
  QString summaryText_;
  FindingsTree* tree_;
  QComboBox* severity_ = nullptr;
  QLineEdit* search_ = nullptr;
  QAction* showAll_ = nullptr;
};

}  // namespace orv::app
