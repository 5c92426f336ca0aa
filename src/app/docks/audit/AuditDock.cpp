#include "app/docks/audit/AuditDock.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

#include "app/Help.h"
#include "app/Text.h"
#include "app/theme/Icons.h"
#include "commands/CsvText.h"

namespace orv::app {

using commands::audit::Severity;

AuditDock::AuditDock(QWidget* parent) : QDockWidget(tr("Audit"), parent) {
  setObjectName(QStringLiteral("AuditDock"));
  setAccessibleName(tr("Audit"));
  setWhatsThis(tr("The findings of the last audit."));
  auto* content = new QWidget(this);
  tree_ = new FindingsTree(content);
  summary_ = new QLabel(content);
  summary_->setObjectName(QStringLiteral("lblAudit"));
  summary_->setMargin(2);
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(buildToolBar());
  layout->addWidget(tree_, 1);
  layout->addWidget(summary_);
  setWidget(content);
  buildMenu();
  connect(tree_, &FindingsTree::chosen, this, &AuditDock::chosen);
  toggleViewAction()->setObjectName(QStringLiteral("mnuViewAudit"));
  toggleViewAction()->setText(tr("&Audit"));
  toggleViewAction()->setIcon(icon("audit"));
  explain(toggleViewAction(), tr("Show what the last audit has found"));
  hide();
}

QToolBar* AuditDock::buildToolBar() {
  auto* bar = new QToolBar(this);
  bar->setIconSize({16, 16});
  bar->setAccessibleName(tr("Audit tools"));
  bar->setWhatsThis(tr("Which findings are shown, and ways to copy and save them."));
  severity_ = new QComboBox(bar);
  severity_->setObjectName(QStringLiteral("cboSeverity"));
  severity_->addItem(tr("Errors, warnings and notes"), static_cast<int>(Severity::note));
  severity_->addItem(tr("Errors and warnings"), static_cast<int>(Severity::warning));
  severity_->addItem(tr("Errors"), static_cast<int>(Severity::error));
  severity_->setAccessibleName(tr("Severity"));
  explain(severity_, tr("Which findings are shown"));
  search_ = new QLineEdit(bar);
  search_->setObjectName(QStringLiteral("txtFindings"));
  search_->setPlaceholderText(tr("Rule, record or text"));
  search_->setClearButtonEnabled(true);
  search_->setAccessibleName(tr("Filter"));
  explain(search_, tr("Show only findings with this text"));
  bar->addWidget(severity_);
  bar->addWidget(search_);
  copy_ = bar->addAction(icon("copy"), tr("Copy"), this, &AuditDock::copy);
  copy_->setObjectName(QStringLiteral("mnuAuditCopy"));
  copy_->setShortcut(QKeySequence::Copy);
  copy_->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  explain(copy_,
          tr("Copy the selected findings or rules, or all findings that are shown, as a table"));
  auto* save = bar->addAction(icon("save"), tr("Save as CSV..."), this,
                              [this] { saveAsCsv(tree_->shownRows(), tr("findings"), this); });
  save->setObjectName(QStringLiteral("mnuAuditSave"));
  explain(save, tr("Save the findings that are shown as a table for other programs"));
  connect(severity_, &QComboBox::currentIndexChanged, this, &AuditDock::followFilter);
  // When the typing rests.
  constexpr int kRest = 150;  // ms
  auto* rest = new QTimer(this);
  rest->setSingleShot(true);
  rest->setInterval(kRest);
  connect(search_, &QLineEdit::textChanged, rest, qOverload<>(&QTimer::start));
  connect(rest, &QTimer::timeout, this, &AuditDock::followFilter);
  return bar;
}

void AuditDock::buildMenu() {
  tree_->setContextMenuPolicy(Qt::ActionsContextMenu);
  leaveOut_ = new QAction(tr("&Leave Out This Rule"), tree_);
  leaveOut_->setObjectName(QStringLiteral("mnuAuditLeaveOut"));
  explain(leaveOut_, tr("Show no findings of this rule from now on"));
  showAll_ = new QAction(tr("Show &All Rules Again"), tree_);
  showAll_->setObjectName(QStringLiteral("mnuAuditShowAll"));
  explain(showAll_, tr("Show the findings of rules again that were left out"));
  showAll_->setEnabled(false);
  tree_->addActions({copy_, leaveOut_, showAll_});
  connect(leaveOut_, &QAction::triggered, this, [this] { leaveOut(tree_->currentRule()); });
  connect(showAll_, &QAction::triggered, this, [this] {
    setLeftOut({});
    emit leftOutChanged({});
  });
}

void AuditDock::show(Findings findings, const QString& summary) {
  summaryText_ = summary;
  tree_->show(std::move(findings));
  followFilter();
  setVisible(true);
  raise();
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
  summary_->setText(text);
}

void AuditDock::copy() const {
  TableRows rows = tree_->selectedRows();
  if (rows.size() == 1) rows = tree_->shownRows();
  QStringList lines;
  for (QStringList& row : rows) {
    for (QString& cell : row) cell = qt(commands::separatedCell(cell.toStdString(), '\t'));
    lines << row.join(u'\t');
  }
  QApplication::clipboard()->setText(lines.join(u'\n'));
}

}  // namespace orv::app
