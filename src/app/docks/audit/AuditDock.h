// The findings of an audit beside the records.
#pragma once

#include <QDockWidget>
#include <QStringList>

#include "app/docks/audit/FindingsTree.h"

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QToolBar;

namespace orv::app {

/// Closed until there is something to show.
class AuditDock : public QDockWidget {
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

 private:
  QToolBar* buildToolBar();
  void buildMenu();
  void leaveOut(const QString& rule);
  void followFilter();
  void copy() const;

  FindingsFilter filter_;
  QString summaryText_;
  QComboBox* severity_;
  QLineEdit* search_;
  FindingsTree* tree_;
  QLabel* summary_;
  QAction* copy_;
  QAction* leaveOut_;
  QAction* showAll_;
};

}  // namespace orv::app
