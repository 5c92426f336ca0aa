#include "app/docks/audit/AuditDock.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolBar>

#include "app/Text.h"

namespace orv::app {

using commands::audit::Severity;

AuditDock::AuditDock(QWidget* parent) : AuditDock(new FindingsTree, parent) {}

AuditDock::AuditDock(FindingsTree* tree, QWidget* parent)
    : ListDock({.name = "Audit",
                .iconName = "audit",
                .title = tr("Audit"),
                .menuText = tr("&Audit"),
                .help = tr("The findings of the last audit."),
                .openHelp = tr("Show what the last audit has found")},
               tree, parent),
      tree_(tree) {
  addTools();
  connect(tree_, &FindingsTree::chosen, this, &AuditDock::chosen);
}

void AuditDock::addTools() {
  // Two bars: the dock is narrow.
  QToolBar* severities =
      addBar(tr("Severities"), tr("How severe the findings are that are shown."));
  QToolBar* bar =
      addBar(tr("Audit tools"), tr("Which findings are shown, and ways to copy and save them."));
  severity_ = addChoice(*severities, "cboSeverity", tr("Severity"), tr("Which findings are shown"));
  search_ = addFilter(*bar, "txtFindings", tr("Rule, record or text"),
                      tr("Show only findings with this text"));
  const QSignalBlocker quiet(severity_);
  severity_->addItem(tr("Errors, warnings and notes"), static_cast<int>(Severity::note));
  severity_->addItem(tr("Errors and warnings"), static_cast<int>(Severity::warning));
  severity_->addItem(tr("Errors"), static_cast<int>(Severity::error));
  addExport(*bar, tr("findings"));
  const QAction* leaveOut = addCommand(nullptr, "mnuAuditLeaveOut", "", tr("&Leave Out This Rule"),
                                       tr("Show no findings of this rule from now on"));
  showAll_ = addCommand(nullptr, "mnuAuditShowAll", "", tr("Show &All Rules Again"),
                        tr("Show the findings of rules again that were left out"));
  showAll_->setEnabled(false);
  connect(leaveOut, &QAction::triggered, this, [this] { this->leaveOut(tree_->currentRule()); });
  connect(showAll_, &QAction::triggered, this, [this] {
    setLeftOut({});
    emit leftOutChanged({});
  });
}

void AuditDock::show(Findings findings, const QString& summary) {
  summaryText_ = summary;
  tree_->show(std::move(findings));
  followFilter();
  open();
}

QStringList AuditDock::leftOut() const {
  QStringList rules = filter_.leftOut.values();
  rules.sort();
  return rules;
}

void AuditDock::setLeftOut(const QStringList& rules) {
  filter_.leftOut = {rules.begin(), rules.end()};
  followFilter();
}

void AuditDock::leaveOut(const QString& rule) {
  if (rule.isEmpty()) return;
  filter_.leftOut.insert(rule);
  followFilter();
  emit leftOutChanged(leftOut());
}

void AuditDock::followFilter() {
  filter_.least = static_cast<Severity>(severity_->currentData().toInt());
  filter_.text = search_->text().trimmed();
  tree_->filter(filter_);
  showAll_->setEnabled(!filter_.leftOut.isEmpty());
  QString text = summaryText_;
  if (!text.isEmpty()) text += tr(" %L1 shown.").arg(tree_->shownCount());
  if (!filter_.leftOut.isEmpty()) {
    text += tr(" Rules left out: %1.").arg(leftOut().join(QStringLiteral(", ")));
  }
  tell(text);
}

}  // namespace orv::app

#include "moc_AuditDock.cpp"
